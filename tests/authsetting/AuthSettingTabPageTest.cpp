#include "authsetting/shell/AuthSettingTabPage.h"

#include "authsetting/shell/AuthSettingEvents.h"
#include "tests/authsetting/ShellTestTools.h"
#include "tests/support/TestCase.h"

#include <QElapsedTimer>

namespace {

class SomeTabPage : public GW::IAuthSettingTabPage
{
public:
    explicit SomeTabPage(QWidget* parent) : IAuthSettingTabPage(201, -1, 2010001, parent) {}
    void reloadData() override {}
};

} // namespace

class AuthSettingTabPageTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void knowsItsPlaceAndHasNoKeyAtFirst()
    {
        EventRecorder dialog;
        SomeTabPage tab(&dialog);
        QCOMPARE(tab.pageId(), 201);
        QCOMPARE(tab.subPageId(), -1);
        QCOMPARE(tab.tabPageId(), 2010001);
        QCOMPARE(tab.key(), QString());
        QCOMPARE(tab.objectName(), QStringLiteral("halden_i_settingpage"));
        QCOMPARE(tab.focusPolicy(), Qt::StrongFocus);
        tab.setKey(QStringLiteral("k"));
        QCOMPARE(tab.key(), QStringLiteral("k"));
    }

    void aRequestMakesTheDialogBusy()
    {
        EventRecorder dialog;
        SomeTabPage tab(&dialog);
        tab.beginRequest();
        QCOMPARE(dialog.events.size(), 1);
        QCOMPARE(dialog.events[0].id, int(GW::EVENT_SET_WAITING));
        QCOMPARE(dialog.events[0].param1, 2010001);
        QCOMPARE(dialog.events[0].param2, 1);
        QCOMPARE(dialog.events[0].text, QString());
        QCOMPARE(dialog.events[0].data, nullptr);
    }

    void withoutARequestTheCompletionRunsAtOnceAfterTheBusyStateEnded()
    {
        EventRecorder dialog;
        SomeTabPage tab(&dialog);
        int eventsBefore = -1;
        tab.finishRequest([&] { eventsBefore = int(dialog.events.size()); });
        QCOMPARE(eventsBefore, 1);
        QCOMPARE(dialog.events.size(), 1);
        QCOMPARE(dialog.events[0].id, int(GW::EVENT_SET_WAITING));
        QCOMPARE(dialog.events[0].param1, 2010001);
        QCOMPARE(dialog.events[0].param2, 0);
    }

    void aClockAtTheLargestDoubleIsNoRequest()
    {
        EventRecorder dialog;
        SomeTabPage tab(&dialog);
        StandingClock clock;
        clock.now = -1e9;
        int runs = 0;
        tab.finishRequest([&] { ++runs; });
        QCOMPARE(runs, 1);
    }

    void anAnswerWithin700MillisecondsWaitsForTheRest()
    {
        EventRecorder dialog;
        SomeTabPage tab(&dialog);
        StandingClock clock;
        tab.beginRequest();
        clock.now += 0.2;
        int runs = 0;
        int eventsBefore = -1;
        QElapsedTimer timer;
        timer.start();
        tab.finishRequest([&] {
            ++runs;
            eventsBefore = int(dialog.events.size());
        });
        QCOMPARE(runs, 0);
        QCOMPARE(dialog.events.size(), 1);
        QTRY_COMPARE(runs, 1);
        const qint64 waited = timer.elapsed();
        QVERIFY2(waited >= 495, qPrintable(QString::number(waited)));
        QVERIFY2(waited < 4000, qPrintable(QString::number(waited)));
        QCOMPARE(eventsBefore, 2);
        QCOMPARE(dialog.events[1].param1, 2010001);
        QCOMPARE(dialog.events[1].param2, 0);
    }

    void theTimeCountsFromWhenTheBusyStateIsShown()
    {
        class SlowDialog : public EventRecorder
        {
        public:
            bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override
            {
                clock.now += 5;
                return EventRecorder::handleEvent(eventId, param1, param2, text, data);
            }
            StandingClock clock;
        };
        SlowDialog dialog;
        SomeTabPage tab(&dialog);
        tab.beginRequest();
        int runs = 0;
        tab.finishRequest([&] { ++runs; });
        QCOMPARE(runs, 0);
    }

    void theRestIsCutToWholeMilliseconds()
    {
        EventRecorder dialog;
        SomeTabPage tab(&dialog);
        StandingClock clock;
        clock.now = 0;
        tab.beginRequest();
        // 0.9 ms are left, which is no whole millisecond: the timer fires in the next event loop.
        clock.now = 0.6991;
        int runs = 0;
        tab.finishRequest([&] { ++runs; });
        QCOMPARE(runs, 0);
        QCoreApplication::processEvents();
        QCOMPARE(runs, 1);
    }

    void anAnswerAfter700MillisecondsIsShownAtOnce_data()
    {
        QTest::addColumn<double>("elapsed");
        QTest::addColumn<bool>("atOnce");
        QTest::newRow("0.5 s") << 0.5 << false;
        QTest::newRow("0.6999 s") << 0.6999 << false;
        QTest::newRow("0.69998 s") << 0.69998 << false;
        QTest::newRow("0.69999 s") << 0.69999 << true;
        QTest::newRow("0.7 s") << 0.7 << true;
        QTest::newRow("1 s") << 1.0 << true;
    }

    void anAnswerAfter700MillisecondsIsShownAtOnce()
    {
        QFETCH(double, elapsed);
        QFETCH(bool, atOnce);
        EventRecorder dialog;
        StandingClock clock;
        clock.now = 0;
        int runs = 0;
        SomeTabPage tab(&dialog);
        tab.beginRequest();
        clock.now = elapsed;
        tab.finishRequest([&] { ++runs; });
        QCOMPARE(runs, atOnce ? 1 : 0);
    }

    void twoAnswersWithinTheWaitRunTheLaterCompletionTwice()
    {
        EventRecorder dialog;
        SomeTabPage tab(&dialog);
        StandingClock clock;
        tab.beginRequest();
        clock.now += 0.6;
        QStringList runs;
        tab.finishRequest([&] { runs.append(QStringLiteral("first")); });
        tab.finishRequest([&] { runs.append(QStringLiteral("later")); });
        QTRY_COMPARE(runs.size(), 2);
        QCOMPARE(runs, QStringList({QStringLiteral("later"), QStringLiteral("later")}));
        QTest::qWait(150);
        QCOMPARE(runs.size(), 2);
        QCOMPARE(dialog.of(GW::EVENT_SET_WAITING).size(), 3);
    }

    void theStartOfTheLastRequestCounts()
    {
        EventRecorder dialog;
        SomeTabPage tab(&dialog);
        StandingClock clock;
        tab.beginRequest();
        clock.now += 5;
        tab.beginRequest();
        clock.now += 0.65;
        int runs = 0;
        tab.finishRequest([&] { ++runs; });
        QCOMPARE(runs, 0);
        QTRY_COMPARE(runs, 1);
        // The start never goes back to "none": a later answer without a request is long past it.
        clock.now += 1;
        tab.finishRequest([&] { ++runs; });
        QCOMPARE(runs, 2);
        // Nor does an answer that was shown at once put it there.
        clock.now -= 1;
        tab.finishRequest([&] { ++runs; });
        QCOMPARE(runs, 2);
        QTRY_COMPARE(runs, 3);
    }

    void aCompletionMayBeginAndFinishTheNextRequest()
    {
        EventRecorder dialog;
        SomeTabPage tab(&dialog);
        StandingClock clock;
        tab.beginRequest();
        clock.now += 0.65;
        QStringList runs;
        const QString big(100, u'x');
        tab.finishRequest([&tab, &runs, &clock, big] {
            tab.beginRequest();
            clock.now += 0.68;
            tab.finishRequest([&runs] { runs.append(QStringLiteral("second")); });
            runs.append(big);
        });
        QTRY_COMPARE(runs.size(), 2);
        QCOMPARE(runs, QStringList({big, QStringLiteral("second")}));
    }

    void theCompletionIsReleasedOnceItRan()
    {
        EventRecorder dialog;
        SomeTabPage tab(&dialog);
        const auto alive = std::make_shared<int>(0);
        tab.finishRequest([alive] {});
        QCOMPARE(alive.use_count(), 1L);
    }

    void anEmptyCompletionThrows()
    {
        EventRecorder dialog;
        SomeTabPage tab(&dialog);
        QVERIFY_THROWS_EXCEPTION(boost::bad_function_call,
                                 tab.finishRequest(boost::function<void()>()));
        QCOMPARE(dialog.of(GW::EVENT_SET_WAITING).size(), 1);
        QVERIFY_THROWS_EXCEPTION(boost::bad_function_call, tab.slotTimerEnable());
        QCOMPARE(dialog.of(GW::EVENT_SET_WAITING).size(), 2);
    }

    void aTabPageThatDiesWhileWaitingTakesItsCompletionAlong()
    {
        EventRecorder dialog;
        auto tab = std::make_unique<SomeTabPage>(&dialog);
        StandingClock clock;
        tab->beginRequest();
        clock.now += 0.69;
        const auto alive = std::make_shared<int>(0);
        int runs = 0;
        tab->finishRequest([alive, &runs] { ++runs; });
        tab.reset();
        QCOMPARE(alive.use_count(), 1L);
        QTest::qWait(50);
        QCOMPARE(runs, 0);
    }
};

int main(int argc, char** argv)
{
    return runTest<AuthSettingTabPageTest>(argc, argv);
}

#include "AuthSettingTabPageTest.moc"
