#include "authsetting/shell/NavigatorFiller.h"
#include "kit/table/OddEvenRowTable.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/authsetting/ModalDriver.h"
#include "tests/support/TipTestCase.h"

#include <QLineEdit>
#include <QPointer>
#include <QWindow>

#include <climits>

class AuthSettingDialogPagesTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void everyPlaceHasItsTabs_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("subPage");
        QTest::addColumn<QStringList>("titles");
        QTest::addColumn<QStringList>("classes");
        const auto row = [](const char* name, int page, int subPage, QStringList titles,
                            QStringList classes) {
            QTest::newRow(name) << page << subPage << titles << classes;
        };
        const QString single = QStringLiteral("GW::CAuthSettingSingleAccountAuthorizeTabPage");
        row("201", 201, INT_MAX, {QStringLiteral("账号总览"), QStringLiteral("批量授权")},
            {QStringLiteral("GW::CAuthSettingAccountsOverviewTabPage"),
             QStringLiteral("GW::CAuthSettingAccountsAuthorizeTabPage")});
        row("201 account", 201, 20101, {QStringLiteral("账号授权")}, {single});
        row("201 any sub-page", 201, -5, {QStringLiteral("账号授权")}, {single});
        row("202", 202, INT_MAX, {QStringLiteral("导入授权")},
            {QStringLiteral("GW::CAuthSettingImportAuthorizationTabPage")});
        row("202 account", 202, 20201, {QStringLiteral("基本信息")}, {single});
        row("202 any sub-page", 202, 0, {QStringLiteral("基本信息")}, {single});
        row("203", 203, INT_MAX, {QStringLiteral("子用户管理")},
            {QStringLiteral("GW::CAuthSettingRestrictedUsersManageTabPage")});
        row("203 sub-user", 203, 20401, {QStringLiteral("子用户设置")},
            {QStringLiteral("GW::CAuthSettingSingleRestrictedUserGeneralTabPage")});
        row("203 other sub-page", 203, 20402, {}, {});
        row("unknown page", 204, INT_MAX, {}, {});
        row("no page", INT_MAX, INT_MAX, {}, {});
    }

    void everyPlaceHasItsTabs()
    {
        QFETCH(int, page);
        QFETCH(int, subPage);
        QFETCH(QStringList, titles);
        QFETCH(QStringList, classes);
        DialogUnderTest test;
        test.dialog.showPage(page, subPage, QStringLiteral("key"), 0);
        GW::CAuthSettingPage* shown = test.dialog.shownPage();
        QVERIFY(shown);
        QCOMPARE(shown->pageId(), page);
        QCOMPARE(shown->subPageId(), subPage);
        QCOMPARE(shown->parentWidget(), &test.dialog);
        QCOMPARE(tabTitles(shown), titles);
        QStringList found;
        for (int index = 0; index < shown->tabControl()->tabCount(); ++index) {
            const QWidget* tab = shown->tabControl()->getTabWidget(index);
            found.append(QString::fromLatin1(tab->metaObject()->className()));
            const auto* tabPage = qobject_cast<const GW::IAuthSettingTabPage*>(tab);
            QVERIFY(tabPage);
            QCOMPARE(tabPage->key(), QStringLiteral("key"));
        }
        QCOMPARE(found, classes);
    }

    void everyTabPageKnowsItsTriple_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("subPage");
        QTest::addColumn<int>("tab");
        QTest::addColumn<int>("ownSubPage");
        QTest::addColumn<int>("tabPageId");
        QTest::newRow("overview") << 201 << INT_MAX << 0 << -1 << 2010001;
        QTest::newRow("batch") << 201 << INT_MAX << 1 << -1 << 2020001;
        QTest::newRow("import") << 202 << INT_MAX << 0 << -1 << 2020001;
        QTest::newRow("users") << 203 << INT_MAX << 0 << -1 << 2030001;
        QTest::newRow("own account") << 201 << 20101 << 0 << 20101 << 2010101;
        QTest::newRow("imported account") << 202 << 20201 << 0 << 20201 << 2020101;
        QTest::newRow("user") << 203 << 20401 << 0 << 20401 << 2040101;
    }

    void everyTabPageKnowsItsTriple()
    {
        QFETCH(int, page);
        QFETCH(int, subPage);
        QFETCH(int, tab);
        QFETCH(int, ownSubPage);
        QFETCH(int, tabPageId);
        DialogUnderTest test;
        test.dialog.showPage(page, subPage, QString(), tab);
        const auto* tabPage = test.currentTab();
        QVERIFY(tabPage);
        QCOMPARE(tabPage->pageId(), page);
        QCOMPARE(tabPage->subPageId(), ownSubPage);
        QCOMPARE(tabPage->tabPageId(), tabPageId);
    }

    void everyShownTabPageIsUsable()
    {
        DialogUnderTest test;
        const QVector<std::pair<int, int>> places{{201, INT_MAX}, {201, 20101},   {202, INT_MAX},
                                                  {202, 20201},   {203, INT_MAX}, {203, 20401}};
        for (const auto& [page, subPage] : places) {
            test.dialog.showPage(page, subPage, QStringLiteral("key"), 0);
            QVERIFY(test.currentTab()->isEnabled());
        }
        test.dialog.showPage(201);
        QVERIFY(!test.dialog.shownPage()->tabControl()->getTabWidget(1)->isEnabled());
        test.dialog.shownPage()->tabControl()->activateTab(1);
        QVERIFY(test.currentTab()->isEnabled());
    }

    void theImportPageHasItsCommandBesideTheTabs()
    {
        DialogUnderTest test;
        test.dialog.showPage(202);
        const auto* button = test.dialog.shownPage()->findChild<QPushButton*>(
            QStringLiteral("halden_corner_button_0"));
        QVERIFY(button);
        QCOMPARE(button->text(), QStringLiteral("导入授权"));
        QCOMPARE(button->shortcut(), QKeySequence(QStringLiteral("Ctrl+O")));
        QVERIFY(button->toolTip().contains(QStringLiteral("Ctrl+O")));
    }

    void theImportCommandsShortcutAsksForAFileOnItsPageOnly()
    {
        DialogUnderTest test;
        test.dialog.showPage(202);
        test.dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&test.dialog));
        {
            ModalDriver user;
            user.answerFile(QString());
            QTest::keyClick(test.dialog.windowHandle(), Qt::Key_O, Qt::ControlModifier);
            QCOMPARE(user.titles, QStringList(QStringLiteral("导入授权")));
        }
        const auto nothingIsAsked = [&test] {
            QTest::keyClick(test.dialog.windowHandle(), Qt::Key_O, Qt::ControlModifier);
            QCoreApplication::processEvents();
            QVERIFY(!QApplication::activePopupWidget());
            QCOMPARE(QApplication::activeModalWidget(), nullptr);
            QVERIFY(test.services.client.imports.isEmpty());
        };
        auto* button = test.dialog.shownPage()->findChild<QPushButton*>(
            QStringLiteral("halden_corner_button_0"));
        button->setEnabled(false);
        nothingIsAsked();
        button->setEnabled(true);
        test.dialog.setDialogEnabled(false);
        nothingIsAsked();
        test.dialog.setDialogEnabled(true);
        test.dialog.showPage(201);
        nothingIsAsked();
    }

    void aShortcutActsOnThePageThatWasShownWhenItWasPressed()
    {
        DialogUnderTest test;
        test.services.client.subUsers = {QStringLiteral("s1"), QStringLiteral("s2")};
        test.services.client.activeSubUsers = {QStringLiteral("s1"), QStringLiteral("s2")};
        test.dialog.setNavigatorFiller(GW::fillNavigator);
        test.dialog.load();
        test.dialog.showPage(203, 20401, QStringLiteral("s1"), 0);
        test.dialog.activeNode(203, 20401, QStringLiteral("s1"));
        test.dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&test.dialog));
        QTest::keyClick(test.dialog.windowHandle(), Qt::Key_F8);
        QCOMPARE(test.services.client.setSubUsers.size(), 1);
        QCOMPARE(test.services.client.setSubUsers[0].user, QStringLiteral("s1"));
        // Busy by now, so the tree keeps its node and no other user gets a request.
        QTest::keyClick(test.dialog.windowHandle(), Qt::Key_PageDown, Qt::ControlModifier);
        QTest::keyClick(test.dialog.windowHandle(), Qt::Key_F8);
        QCOMPARE(test.dialog.shownPage()->key(), QStringLiteral("s1"));
        QCOMPARE(test.services.client.setSubUsers.size(), 1);
        // A page that another one covers has no shortcut.
        test.dialog.setDialogEnabled(true);
        test.dialog.showPage(201);
        QTest::keyClick(test.dialog.windowHandle(), Qt::Key_F8);
        QCOMPARE(test.services.client.setSubUsers.size(), 1);
    }

    void theSubUsersPageHasItsTwoCommandsBesideTheTabs()
    {
        DialogUnderTest test;
        test.services.client.subUsers = {QStringLiteral("s1"), QStringLiteral("s2")};
        test.dialog.show();
        test.dialog.showPage(203);
        auto* enable = test.dialog.shownPage()->findChild<QPushButton*>(
            QStringLiteral("halden_corner_button_0"));
        auto* disable = test.dialog.shownPage()->findChild<QPushButton*>(
            QStringLiteral("halden_corner_button_1"));
        QVERIFY(enable && disable);
        QCOMPARE(enable->text(), QStringLiteral("全部启用"));
        QVERIFY(enable->toolTip().contains(QStringLiteral("密码")));
        QCOMPARE(disable->text(), QStringLiteral("全部禁用"));
        disable->click();
        QCOMPARE(test.services.client.setSubUsers.size(), 2);
        QVERIFY(!test.services.client.setSubUsers[0].enable);
        QVERIFY(test.looksBusy());
        QVERIFY(!enable->isEnabled());
    }

    void pagesAreKeptByPageAndSubPageAndOnlyTheirKeyChanges()
    {
        DialogUnderTest test;
        test.dialog.showPage(201, 20101, QStringLiteral("keyA"), 0);
        GW::CAuthSettingPage* first = test.dialog.shownPage();
        QCOMPARE(first->key(), QStringLiteral("keyA"));
        test.dialog.showPage(201, 20101, QStringLiteral("keyB"), 0);
        QCOMPARE(test.dialog.shownPage(), first);
        QCOMPARE(first->key(), QStringLiteral("keyB"));
        QCOMPARE(test.currentTab()->key(), QStringLiteral("keyB"));
        QCOMPARE(test.dialog.pages().size(), 1);
        test.dialog.showPage(201);
        test.dialog.showPage(202);
        test.dialog.showPage(201);
        QCOMPARE(test.dialog.pages().size(), 3);
    }

    void theSameRequestTwiceDoesNothing()
    {
        DialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 0);
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        QCOMPARE(test.dialog.shownPage()->tabControl()->currentTabIndex(), 0);
        auto* table = test.currentTab()->findChild<KZ::COddEvenRowTable*>();
        test.services.user.addAccount(1, 1, "b", "1", mbservice::AUTH_TYPE_NOT_GRANTED);
        test.dialog.showPage(201);
        QCOMPARE(table->rowCount(), 0);
        test.dialog.showPage(202);
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        QCOMPARE(test.dialog.shownPage()->tabControl()->currentTabIndex(), 1);
    }

    void aTabThatThePageLacksMeansItsFirst()
    {
        DialogUnderTest test;
        test.services.client.subUsers = {QStringLiteral("s1"), QStringLiteral("s2")};
        const auto shownUser = [&test] {
            QStringList texts;
            const QList<QLineEdit*> editors = test.currentTab()->findChildren<QLineEdit*>();
            for (const QLineEdit* editor : editors)
                texts.append(editor->text());
            return texts;
        };
        test.dialog.showPage(203, 20401, QStringLiteral("s1"), 0);
        QVERIFY(shownUser().contains(QStringLiteral("s1")));
        for (const int lacking : {1, -1, INT_MAX}) {
            test.dialog.showPage(203, 20401, QStringLiteral("s1"), 0);
            test.dialog.showPage(203, 20401, QStringLiteral("s2"), lacking);
            QVERIFY(shownUser().contains(QStringLiteral("s2")));
            QVERIFY(!shownUser().contains(QStringLiteral("s1")));
        }
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        test.dialog.showPage(202);
        test.dialog.showPage(201, INT_MAX, QString(), 2);
        QCOMPARE(test.dialog.shownPage()->tabControl()->currentTabIndex(), 0);
    }

    void hidingThePagesShowsTheEmptyOne()
    {
        DialogUnderTest test;
        test.dialog.showPage(201);
        test.dialog.hidePages();
        QCOMPARE(test.dialog.shownPage()->pageId(), INT_MAX);
        QCOMPARE(test.dialog.shownPage()->tabControl()->tabCount(), 0);
        test.dialog.hidePages();
        QCOMPARE(test.dialog.pages().size(), 2);
    }

    void thePagesDieWithTheDialog()
    {
        FakeServices services;
        auto dialog = std::make_unique<OpenDialog>();
        dialog->showPage(201);
        dialog->showPage(203);
        const QPointer<QWidget> page(dialog->shownPage());
        dialog->show();
        dialog.reset();
        QVERIFY(!page);
    }

    void aPageLeftWhileBusyIsUsableWhenItIsShownIdle()
    {
        DialogUnderTest test;
        test.dialog.showPage(201);
        test.dialog.show();
        test.dialog.setDialogEnabled(false);
        test.dialog.showPage(202);
        QVERIFY(!test.dialog.shownPage()->isEnabled());
        test.dialog.setDialogEnabled(true);
        QVERIFY(test.looksIdle());
        test.dialog.showPage(201);
        QVERIFY(test.looksIdle());
    }
};

int main(int argc, char** argv)
{
    return runTest<AuthSettingDialogPagesTest>(argc, argv);
}

#include "AuthSettingDialogPagesTest.moc"
