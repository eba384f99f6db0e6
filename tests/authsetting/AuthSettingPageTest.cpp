#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/shell/AuthSettingTabPage.h"
#include "kit/events/EventIds.h"
#include "tests/authsetting/ShellTestTools.h"
#include "tests/support/TestCase.h"

#include <QPushButton>

#include <climits>

namespace {

class CountingTabPage : public GW::IAuthSettingTabPage
{
public:
    explicit CountingTabPage(QWidget* parent) : IAuthSettingTabPage(202, -1, 2020001, parent)
    {
        setDisabled(true);
    }

    void reloadData() override
    {
        ++reloads;
        calls.append(QStringLiteral("reload"));
        enabledAtReload = isEnabled();
    }
    void onActive() override { calls.append(QStringLiteral("active")); }

    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override
    {
        handled.append({eventId, param1, param2, text, data});
        if (eventId == takes)
            return true;
        return CBaseWidget::handleEvent(eventId, param1, param2, text, data);
    }

    int reloads = 0;
    int takes = -1;
    bool enabledAtReload = false;
    QStringList calls;
    QVector<EventRecorder::Event> handled;
};

/// A page with the tabs "one" and "two" under a recorder in the dialog's place.
struct PageUnderTest
{
    PageUnderTest()
    {
        page->addTabPage(QStringLiteral("one"), first);
        page->addTabPage(QStringLiteral("two"), second);
    }

    EventRecorder dialog;
    GW::CAuthSettingPage* page = new GW::CAuthSettingPage(202, INT_MAX, &dialog);
    CountingTabPage* first = new CountingTabPage(page);
    CountingTabPage* second = new CountingTabPage(page);
};

} // namespace

class AuthSettingPageTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void knowsItsPlaceAndFillsItselfWithTheTabs()
    {
        PageUnderTest test;
        QCOMPARE(test.page->objectName(), QStringLiteral("halden_i_settingpage"));
        QCOMPARE(test.page->pageId(), 202);
        QCOMPARE(test.page->subPageId(), INT_MAX);
        QCOMPARE(test.page->key(), QString());
        test.dialog.show();
        test.page->resize(500, 400);
        QCOMPARE(test.page->tabControl()->geometry(), QRect(0, 0, 500, 400));
        QCOMPARE(tabTitles(test.page), QStringList({QStringLiteral("one"), QStringLiteral("two")}));
        QCOMPARE(test.page->tabControl()->getTabWidget(1), test.second);
    }

    void settingTheKeyReachesEveryTabAndReloadsNothing()
    {
        PageUnderTest test;
        test.page->setKey(QStringLiteral("A"));
        QCOMPARE(test.page->key(), QStringLiteral("A"));
        QCOMPARE(test.first->key(), QStringLiteral("A"));
        QCOMPARE(test.second->key(), QStringLiteral("A"));
        QCOMPARE(test.first->reloads + test.second->reloads, 0);
    }

    void theKeyEventChangesOnlyThePagesOwnKey()
    {
        PageUnderTest test;
        test.page->setKey(QStringLiteral("A"));
        QVERIFY(test.page->handleEvent(GW::EVENT_SET_PAGE_KEY, 0, 0, QStringLiteral("B"), nullptr));
        QCOMPARE(test.page->key(), QStringLiteral("B"));
        QCOMPARE(test.first->key(), QStringLiteral("A"));
        QCOMPARE(test.second->key(), QStringLiteral("A"));
        QVERIFY(test.dialog.events.isEmpty());
    }

    void activatingATabReloadsThatTabOnly()
    {
        PageUnderTest test;
        QVERIFY(test.page->tabControl()->activateTab(1));
        QCOMPARE(test.first->reloads, 0);
        QCOMPARE(test.second->reloads, 1);
        test.page->activateCurrentTab();
        QCOMPARE(test.second->reloads, 2);
        QVERIFY(test.dialog.of(KZ::EVENT_TAB_ACTIVATED).isEmpty());
    }

    void aTabPageBornDisabledBecomesUsableOnItsFirstActivation()
    {
        PageUnderTest test;
        QVERIFY(!test.first->isEnabled());
        test.page->tabControl()->activateTab(0);
        QVERIFY(test.first->isEnabled());
        QVERIFY(test.first->enabledAtReload);
        QVERIFY(!test.second->isEnabled());
    }

    void aTabActivatedWhileThePageIsDisabledWaitsForThePage()
    {
        PageUnderTest test;
        test.page->setEnabled(false);
        test.page->tabControl()->activateTab(0);
        QVERIFY(!test.first->isEnabled());
        test.page->setEnabled(true);
        QVERIFY(test.first->isEnabled());
        test.page->setEnabled(false);
        QVERIFY(!test.first->isEnabled());
    }

    void theTabIsToldThatItIsActiveAfterItsReload()
    {
        PageUnderTest test;
        test.page->handleEvent(KZ::EVENT_TAB_ACTIVATED, 0, 0, QString(), nullptr);
        QCOMPARE(test.first->calls,
                 QStringList({QStringLiteral("reload"), QStringLiteral("active")}));
    }

    void anActivatedIndexWithoutATabPageIsHandledAndReloadsNothing()
    {
        PageUnderTest test;
        test.page->tabControl()->addTabWidget(QStringLiteral("foreign"), new QWidget);
        for (const int index : {2, 3, -1, INT_MAX})
            QVERIFY(test.page->handleEvent(KZ::EVENT_TAB_ACTIVATED, 0, index, QString(), nullptr));
        QCOMPARE(test.first->reloads + test.second->reloads, 0);
    }

    void otherEventsGoOnToTheDialogWithAllTheyCarry()
    {
        PageUnderTest test;
        int data = 0;
        QVERIFY(test.first->deliverEvent(GW::EVENT_SET_WAITING, 7, 1, QStringLiteral("t"), &data));
        QCOMPARE(test.dialog.events.size(), 1);
        const EventRecorder::Event event = test.dialog.events[0];
        QCOMPARE(event.id, int(GW::EVENT_SET_WAITING));
        QCOMPARE(event.param1, 7);
        QCOMPARE(event.param2, 1);
        QCOMPARE(event.text, QStringLiteral("t"));
        QCOMPARE(event.data, &data);
        test.dialog.answer = false;
        QVERIFY(!test.page->handleEvent(4711, 0, 0, QString(), nullptr));
    }

    void theReloadOfTheTreePassesAndThenTellsTheCurrentTab()
    {
        PageUnderTest test;
        test.page->tabControl()->activateTab(1);
        test.second->calls.clear();
        QVERIFY(test.second->deliverEvent(GW::EVENT_RELOAD_NAVIGATOR, 0, 0, QString(), nullptr));
        QCOMPARE(test.dialog.of(GW::EVENT_RELOAD_NAVIGATOR).size(), 1);
        QCOMPARE(test.second->calls, QStringList({QStringLiteral("active")}));
        QVERIFY(!test.first->calls.contains(QStringLiteral("active")));
    }

    void aCornerButtonsClickGoesToTheCurrentTab()
    {
        PageUnderTest test;
        test.page->addCornerButton(3, QStringLiteral("Do"), QKeySequence(), QStringLiteral("tip"));
        auto* button = test.page->findChild<QPushButton*>(QStringLiteral("halden_corner_button_3"));
        QVERIFY(button);
        QCOMPARE(button->text(), QStringLiteral("Do"));
        QCOMPARE(button->accessibleName(), QStringLiteral("Do"));
        QCOMPARE(button->toolTip(), QStringLiteral("tip"));
        test.second->takes = KZ::EVENT_BUTTON_CLICKED;
        test.page->tabControl()->activateTab(1);
        test.second->handled.clear();
        button->click();
        QCOMPARE(test.second->handled.size(), 1);
        QCOMPARE(test.second->handled[0].id, int(KZ::EVENT_BUTTON_CLICKED));
        QCOMPARE(test.second->handled[0].param1, 3);
        QVERIFY(test.first->handled.isEmpty());
        QVERIFY(test.dialog.of(KZ::EVENT_BUTTON_CLICKED).isEmpty());
    }

    void aCornerButtonsClickThatTheTabDoesNotKnowGoesOnToTheDialogOnce()
    {
        PageUnderTest test;
        test.page->addCornerButton(0, QStringLiteral("Do"), QKeySequence(), QString());
        auto* button = test.page->findChild<QPushButton*>(QStringLiteral("halden_corner_button_0"));
        test.page->tabControl()->activateTab(0);
        test.first->handled.clear();
        button->click();
        QCOMPARE(test.first->handled.size(), 1);
        QCOMPARE(test.dialog.of(KZ::EVENT_BUTTON_CLICKED).size(), 1);
        button->click();
        QCOMPARE(test.first->handled.size(), 2);
        QCOMPARE(test.dialog.of(KZ::EVENT_BUTTON_CLICKED).size(), 2);
    }

    void aButtonInsideATabPageIsNotHandedDown()
    {
        PageUnderTest test;
        test.page->addCornerButton(0, QStringLiteral("Do"), QKeySequence(), QString());
        test.page->tabControl()->activateTab(0);
        test.first->handled.clear();
        test.second->deliverEvent(KZ::EVENT_BUTTON_CLICKED, 0, 0, QString(), test.second);
        QVERIFY(test.first->handled.isEmpty());
        QCOMPARE(test.dialog.of(KZ::EVENT_BUTTON_CLICKED).size(), 1);
    }

    void aCornerButtonNamesItsShortcut()
    {
        PageUnderTest test;
        test.page->addCornerButton(0, QStringLiteral("Do"), QKeySequence(Qt::CTRL | Qt::Key_O),
                                   QStringLiteral("tip"));
        auto* button = test.page->findChild<QPushButton*>(QStringLiteral("halden_corner_button_0"));
        QCOMPARE(button->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_O));
        QCOMPARE(button->toolTip(), QStringLiteral("tip (Ctrl+O)"));
    }

    void thePageMayDieInsideACornerCommand()
    {
        struct DeadlyTabPage : CountingTabPage
        {
            using CountingTabPage::CountingTabPage;
            bool handleEvent(int, int, int, QString, void*) override
            {
                delete victim;
                return true;
            }
            QWidget* victim = nullptr;
        };
        EventRecorder dialog;
        auto* page = new GW::CAuthSettingPage(202, INT_MAX, &dialog);
        auto* tab = new DeadlyTabPage(page);
        page->addTabPage(QStringLiteral("one"), tab);
        page->addCornerButton(0, QStringLiteral("Do"), QKeySequence(), QString());
        auto* button = page->findChild<QPushButton*>(QStringLiteral("halden_corner_button_0"));
        tab->victim = page;
        const QPointer<QWidget> guard(page);
        // The click's own button would die inside QAbstractButton, which Qt guards against.
        button->click();
        QVERIFY(!guard);
    }
};

int main(int argc, char** argv)
{
    return runTest<AuthSettingPageTest>(argc, argv);
}

#include "AuthSettingPageTest.moc"
