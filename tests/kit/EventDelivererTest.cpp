#include "kit/events/EventDeliverer.h"

#include "kit/events/EventIds.h"
#include "tests/kit/EventRecorder.h"
#include "tests/support/TestCase.h"

using namespace KZ;

namespace {

/// A link that handles nothing but may delete somebody first.
class Link : public CEventWidgetT<QWidget>
{
public:
    using CEventWidgetT<QWidget>::CEventWidgetT;

    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override
    {
        ++seen;
        if (doomed) {
            delete doomed;
            return true;
        }
        return CEventWidgetT<QWidget>::handleEvent(eventId, param1, param2, text, data);
    }

    int seen = 0;
    QWidget* doomed = nullptr;
};

} // namespace

class EventDelivererTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void anEventGoesToTheParentNotToTheSender();
    void plainWidgetsBetweenAreSkipped();
    void unhandledEventsTravelToTheTopWithAllTheyCarry();
    void theEndOfTheChainAnswersFalse();
    void aReparentedWidgetDeliversToItsNewParent();
    void aHandlerMayDeleteTheSender();
    void theNearestDelivererIsFoundFromAnyWidget();
};

void EventDelivererTest::anEventGoesToTheParentNotToTheSender()
{
    EventRecorder top;
    Link sender(&top);
    QVERIFY(sender.deliverEvent(1098, 1, 2, QStringLiteral("k"), nullptr));
    QCOMPARE(sender.seen, 0);
    QCOMPARE(top.records.size(), 1);
}

void EventDelivererTest::plainWidgetsBetweenAreSkipped()
{
    EventRecorder top;
    QWidget plain(&top);
    QWidget plainToo(&plain);
    Link sender(&plainToo);
    QVERIFY(sender.deliverEvent(EVENT_TAB_ACTIVATED, 0, 3, QString(), nullptr));
    QCOMPARE(top.count(EVENT_TAB_ACTIVATED), 1);
}

void EventDelivererTest::unhandledEventsTravelToTheTopWithAllTheyCarry()
{
    EventRecorder top;
    Link middle(&top);
    Link sender(&middle);
    int data = 0;
    QVERIFY(sender.deliverEvent(1101, INT_MAX, -1, QStringLiteral("账户"), &data));
    QCOMPARE(middle.seen, 1);
    QCOMPARE(top.records.size(), 1);
    const EventRecorder::Record& record = top.records.first();
    QCOMPARE(record.id, 1101);
    QCOMPARE(record.param1, INT_MAX);
    QCOMPARE(record.param2, -1);
    QCOMPARE(record.text, QStringLiteral("账户"));
    QCOMPARE(record.data, static_cast<void*>(&data));
}

void EventDelivererTest::theEndOfTheChainAnswersFalse()
{
    QWidget plain;
    Link top(&plain);
    Link sender(&top);
    QVERIFY(!sender.deliverEvent(1, 0, 0, QString(), nullptr));
    QCOMPARE(top.seen, 1);
    QVERIFY(!top.deliverEvent(1, 0, 0, QString(), nullptr));
}

void EventDelivererTest::aReparentedWidgetDeliversToItsNewParent()
{
    EventRecorder before;
    EventRecorder after;
    Link sender(&before);
    sender.setParent(&after);
    QVERIFY(sender.deliverEvent(7, 0, 0, QString(), nullptr));
    QCOMPARE(before.records.size(), 0);
    QCOMPARE(after.count(7), 1);
}

void EventDelivererTest::aHandlerMayDeleteTheSender()
{
    Link top(nullptr);
    auto* const sender = new Link(&top);
    top.doomed = sender;
    QVERIFY(sender->deliverEvent(5, 0, 0, QString(), nullptr));
    QVERIFY(top.findChildren<QWidget*>().isEmpty());
}

void EventDelivererTest::theNearestDelivererIsFoundFromAnyWidget()
{
    QCOMPARE(castEventDeliverer(nullptr), nullptr);
    QWidget stranger;
    QCOMPARE(castEventDeliverer(&stranger), nullptr);
    Link top(nullptr);
    QCOMPARE(castEventDeliverer(&top), static_cast<CEventDeliverer*>(&top));
    QWidget plain(&top);
    QCOMPARE(castEventDeliverer(&plain), static_cast<CEventDeliverer*>(&top));
}

int main(int argc, char** argv)
{
    return runTest<EventDelivererTest>(argc, argv);
}

#include "EventDelivererTest.moc"
