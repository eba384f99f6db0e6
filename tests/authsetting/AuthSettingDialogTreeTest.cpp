#include "authsetting/shell/AuthSettingEvents.h"
#include "kit/table/OddEvenRowTable.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/support/TipTestCase.h"

#include <QScrollBar>
#include <QThread>
#include <QWindow>

#include <climits>

class AuthSettingDialogTreeTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void selectingANodeShowsItsPage()
    {
        DialogUnderTest test;
        test.dialog.setNavigatorFiller(fillThreePages);
        test.dialog.load();
        test.navigator()->setCurrentItem(test.navigator()->topLevelItem(0)->child(0));
        QCOMPARE(test.dialog.shownPage()->pageId(), 201);
        QCOMPARE(test.dialog.shownPage()->subPageId(), 20101);
        QCOMPARE(test.currentTab()->key(), QStringLiteral("keyA"));
    }

    void theShowPageEventShowsThePageOnItsFirstTab()
    {
        DialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        QVERIFY(test.dialog.handleEvent(GW::EVENT_SHOW_PAGE, 201, 20101, QStringLiteral("keyA"),
                                        nullptr));
        QCOMPARE(test.dialog.shownPage()->subPageId(), 20101);
        QCOMPARE(test.dialog.shownPage()->key(), QStringLiteral("keyA"));
        QVERIFY(test.dialog.handleEvent(GW::EVENT_SHOW_PAGE, 201, INT_MAX, QString(), nullptr));
        QCOMPARE(test.dialog.shownPage()->tabControl()->currentTabIndex(), 0);
    }

    void theActivateNodeEventSelectsTopNodesAndChildren()
    {
        DialogUnderTest test;
        test.dialog.setNavigatorFiller(fillThreePages);
        test.dialog.load();
        QVERIFY(test.dialog.handleEvent(GW::EVENT_ACTIVATE_NODE, 202, INT_MAX,
                                        QStringLiteral("ignored"), nullptr));
        QCOMPARE(test.navigator()->currentItem()->text(0), QStringLiteral("import"));
        QCOMPARE(test.dialog.shownPage()->pageId(), 202);
        QVERIFY(test.dialog.handleEvent(GW::EVENT_ACTIVATE_NODE, 201, 20101, QStringLiteral("keyB"),
                                        nullptr));
        QCOMPARE(test.navigator()->currentItem()->text(0), QStringLiteral("b"));
        QCOMPARE(test.dialog.shownPage()->key(), QStringLiteral("keyB"));
    }

    void withoutAFillerTheTreeStaysEmpty()
    {
        DialogUnderTest test;
        test.dialog.load();
        QCOMPARE(test.navigator()->topLevelItemCount(), 0);
        test.dialog.activeNode(201);
        test.dialog.activeNode(201, 20101, QStringLiteral("keyA"));
        QVERIFY(test.dialog.pages().isEmpty());
    }

    void everyReloadEmptiesFillsAndExpandsTheTree_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("load") << 0;
        QTest::newRow("reloadNavigator") << 1;
        QTest::newRow("event") << 2;
    }

    void everyReloadEmptiesFillsAndExpandsTheTree()
    {
        QFETCH(int, way);
        DialogUnderTest test;
        int fills = 0;
        int itemsBefore = -1;
        test.dialog.setNavigatorFiller([&](GW::CAuthSettingNavigator* navigator) {
            ++fills;
            itemsBefore = navigator->topLevelItemCount();
            fillThreePages(navigator);
        });
        for (int round = 1; round <= 3; ++round) {
            if (way == 0)
                test.dialog.load();
            else if (way == 1)
                test.dialog.reloadNavigator();
            else
                QVERIFY(
                    test.dialog.handleEvent(GW::EVENT_RELOAD_NAVIGATOR, 0, 0, QString(), nullptr));
            QCOMPARE(fills, round);
            QCOMPARE(itemsBefore, 0);
            QCOMPARE(test.navigator()->topLevelItemCount(), 3);
            QVERIFY(test.navigator()->topLevelItem(0)->isExpanded());
        }
        // After a reload without nodes the earlier ones are forgotten.
        test.dialog.setNavigatorFiller({});
        test.dialog.load();
        test.dialog.activeNode(201);
        QVERIFY(test.dialog.pages().isEmpty());
    }

    void aReloadOfTheTreeNeverChangesWhichPageIsShown()
    {
        DialogUnderTest test;
        test.dialog.setNavigatorFiller([](GW::CAuthSettingNavigator* navigator) {
            fillThreePages(navigator);
            navigator->setCurrentItem(navigator->topLevelItem(1));
        });
        test.dialog.showPage(203);
        test.dialog.load();
        QCOMPARE(test.dialog.shownPage()->pageId(), 203);
        QCOMPARE(test.navigator()->currentItem()->text(0), QStringLiteral("users"));
    }

    void aReloadOfTheTreeKeepsTheNodeOfThePageWithoutShowingThePageAnew()
    {
        DialogUnderTest test;
        auto* account =
            test.services.user.addAccount(1, 1, "b", "1", mbservice::AUTH_TYPE_NOT_GRANTED).get();
        test.dialog.setNavigatorFiller(fillThreePages);
        test.dialog.load();
        test.dialog.showPage(201);
        test.dialog.shownPage()->tabControl()->activateTab(1);
        auto* table = test.currentTab()->findChild<KZ::COddEvenRowTable*>();
        QCOMPARE(table->rowCount(), 1);
        table->setItemText(0, 3, QStringLiteral("typed"));
        test.dialog.handleEvent(GW::EVENT_RELOAD_NAVIGATOR, 0, 0, QString(), nullptr);
        QCOMPARE(test.navigator()->currentItem()->text(0), QStringLiteral("accounts"));
        QCOMPARE(test.dialog.shownPage()->tabControl()->currentTabIndex(), 1);
        QCOMPARE(table->itemText(0, 3), QStringLiteral("typed"));
        test.dialog.showPage(201, 20101, QStringLiteral("keyB"), 0);
        test.dialog.load();
        QCOMPARE(test.navigator()->currentItem()->text(0), QStringLiteral("b"));
        QVERIFY(account);
    }

    void aPageWithoutANodeLeavesTheTreeWithoutACurrentNode()
    {
        DialogUnderTest test;
        test.dialog.setNavigatorFiller(fillThreePages);
        test.dialog.showPage(201, 20101, QStringLiteral("gone"), 0);
        test.dialog.load();
        QCOMPARE(test.navigator()->currentItem(), nullptr);
        QCOMPARE(test.dialog.shownPage()->key(), QStringLiteral("gone"));
    }

    void aReloadOfTheTreeKeepsItsScrollPosition()
    {
        DialogUnderTest test;
        test.dialog.setNavigatorFiller([](GW::CAuthSettingNavigator* navigator) {
            fillThreePages(navigator);
            for (int child = 0; child < 300; ++child) {
                navigator->addChildNode(QString::number(child), 201, 20101,
                                        QStringLiteral("gw_img_auth_setting_tree_icon_account"),
                                        QStringLiteral("k%1").arg(child));
            }
        });
        test.dialog.load();
        test.dialog.showPage(201);
        test.dialog.show();
        test.dialog.activeNode(201);
        QCoreApplication::processEvents();
        QScrollBar* bar = test.navigator()->verticalScrollBar();
        QVERIFY(bar->maximum() > 100);
        const int middle = bar->maximum() / 2;
        bar->setValue(middle);
        test.dialog.load();
        QCOMPARE(bar->value(), middle);
        QCoreApplication::processEvents();
        QCOMPARE(bar->value(), middle);
    }

    void theChangeSignalReloadsTheVisibleTabOnly()
    {
        DialogUnderTest test;
        int fills = 0;
        test.dialog.setNavigatorFiller([&](GW::CAuthSettingNavigator*) { ++fills; });
        test.dialog.showPage(201);
        auto* overview = test.currentTab()->findChild<KZ::COddEvenRowTable*>();
        auto* batch = test.dialog.shownPage()
                          ->tabControl()
                          ->getTabWidget(1)
                          ->findChild<KZ::COddEvenRowTable*>();
        test.services.user.addAccount(1, 1, "b", "1", mbservice::AUTH_TYPE_NOT_GRANTED);
        Q_EMIT test.services.client.sigUiUpdateAuth();
        QCOMPARE(overview->rowCount(), 1);
        QCOMPARE(batch->rowCount(), 0);
        QCOMPARE(fills, 0);
        QCOMPARE(test.dialog.shownPage()->pageId(), 201);
    }

    void theChangeSignalFromAnotherThreadArrivesInTheGuiThread()
    {
        DialogUnderTest test;
        test.dialog.showPage(201);
        auto* overview = test.currentTab()->findChild<KZ::COddEvenRowTable*>();
        test.services.user.addAccount(1, 1, "b", "1", mbservice::AUTH_TYPE_NOT_GRANTED);
        const std::unique_ptr<QThread> thread(
            QThread::create([&] { Q_EMIT test.services.client.sigUiUpdateAuth(); }));
        thread->start();
        QVERIFY(thread->wait());
        QCOMPARE(overview->rowCount(), 0);
        QTRY_COMPARE(overview->rowCount(), 1);
    }

    void theChangeSignalWithoutAPageDoesNothing()
    {
        DialogUnderTest test;
        Q_EMIT test.services.client.sigUiUpdateAuth();
        test.dialog.hidePages();
        Q_EMIT test.services.client.sigUiUpdateAuth();
        QCOMPARE(test.dialog.pages().size(), 1);
    }

    void theKeyboardStepsThroughTheTreeAndReloads()
    {
        DialogUnderTest test;
        test.dialog.setNavigatorFiller(fillThreePages);
        test.dialog.load();
        test.dialog.showPage(201);
        test.dialog.activeNode(201);
        test.dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&test.dialog));
        QTest::keyClick(&test.dialog, Qt::Key_PageDown, Qt::ControlModifier);
        QCOMPARE(test.dialog.shownPage()->key(), QStringLiteral("keyA"));
        QTest::keyClick(&test.dialog, Qt::Key_PageDown, Qt::ControlModifier);
        QCOMPARE(test.dialog.shownPage()->key(), QStringLiteral("keyB"));
        QTest::keyClick(&test.dialog, Qt::Key_PageUp, Qt::ControlModifier);
        QTest::keyClick(&test.dialog, Qt::Key_PageUp, Qt::ControlModifier);
        QCOMPARE(test.dialog.shownPage()->subPageId(), INT_MAX);
        auto* table = test.currentTab()->findChild<KZ::COddEvenRowTable*>();
        test.services.user.addAccount(1, 1, "b", "1", mbservice::AUTH_TYPE_NOT_GRANTED);
        QTest::keyClick(&test.dialog, Qt::Key_F5);
        QCOMPARE(table->rowCount(), 1);
        test.dialog.setDialogEnabled(false);
        QTest::keyClick(&test.dialog, Qt::Key_PageDown, Qt::ControlModifier);
        QCOMPARE(test.dialog.shownPage()->subPageId(), INT_MAX);
        const QString hint = test.navigator()->toolTip();
        QVERIFY(hint.contains(QStringLiteral("Ctrl+PageUp")));
        QVERIFY(hint.contains(QStringLiteral("Ctrl+PageDown")));
        QVERIFY(hint.contains(QStringLiteral("F5")));
    }

    void theKeyboardReachesTheTreeFromEveryEditor()
    {
        DialogUnderTest test;
        test.dialog.setNavigatorFiller(fillThreePages);
        test.services.user.addAccount(1, 1, "b", "1", mbservice::AUTH_TYPE_NOT_GRANTED);
        test.dialog.load();
        test.dialog.showPage(201);
        test.dialog.activeNode(201);
        test.dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&test.dialog));
        for (const char* name : {"halden_batch_grantee", "halden_batch_start", "halden_table_view",
                                 "halden_batch_authorize"}) {
            test.dialog.shownPage()->tabControl()->activateTab(1);
            auto* editor = test.currentTab()->findChild<QWidget*>(QString::fromLatin1(name));
            QVERIFY2(editor, name);
            editor->setFocus();
            QVERIFY2(editor->hasFocus(), name);
            QTest::keyClick(test.dialog.windowHandle(), Qt::Key_PageDown, Qt::ControlModifier);
            QVERIFY2(test.dialog.shownPage()->key() == QStringLiteral("keyA"), name);
            QTest::keyClick(test.dialog.windowHandle(), Qt::Key_PageUp, Qt::ControlModifier);
            QVERIFY2(test.dialog.shownPage()->key().isEmpty(), name);
        }
    }
};

int main(int argc, char** argv)
{
    return runTest<AuthSettingDialogTreeTest>(argc, argv);
}

#include "AuthSettingDialogTreeTest.moc"
