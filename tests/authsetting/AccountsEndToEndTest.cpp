#include "authsetting/shell/NavigatorFiller.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/ComboBox.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/embedding/XPointer.h"
#include "tests/support/TipTestCase.h"

#include <QLineEdit>
#include <QMenu>
#include <QTableView>
#include <QTimer>
#include <QWindow>

#include <functional>

namespace {

/// The dialog as a user has it before him: with a pointer and a window manager.
struct Desk
{
    Desk()
    {
        test.dialog.setNavigatorFiller(GW::fillNavigator);
        test.services.config.addPlatform(1, QStringLiteral("期货一"));
        for (const char* id : {"10", "11", "12"}) {
            test.services.user.addAccount(1, 1, "b", id, mbservice::AUTH_TYPE_NOT_GRANTED);
        }
    }

    /// Opens the dialog modally and does `work` in it; whether that came to its end.
    bool open(const std::function<void()>& work)
    {
        bool done = false;
        QTimer::singleShot(0, &test.dialog, [&] {
            if (QTest::qWaitForWindowActive(&test.dialog)) {
                work();
                done = true;
            }
            test.dialog.close();
        });
        GW::CAuthSettingDialog::showSettingPage(201);
        return done;
    }

    KZ::COddEvenRowTable* table() { return test.currentTab()->findChild<KZ::COddEvenRowTable*>(); }

    DialogUnderTest test;
    XPointer pointer;
};

} // namespace

class AccountsEndToEndTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aUserCancelsAGrantInTheOverview()
    {
        Desk desk;
        FakeServices& services = desk.test.services;
        const auto account = services.user.accounts[1];
        services.grant(account, QStringLiteral("bob"), QDate(2026, 3, 2), QDate(2026, 3, 9));
        const bool done = desk.open([&] {
            QCOMPARE(desk.table()->itemText(1, 4), QStringLiteral("bob"));
            auto* button = desk.table()->itemWidget(1, 7)->findChild<QPushButton*>();
            QVERIFY(desk.pointer.click(*button));
            QTRY_COMPARE(services.client.delAuths.size(), 1);
            QVERIFY(desk.test.looksBusy());
            QVERIFY(desk.test.progressBar()->isVisible());

            account->authType = mbservice::AUTH_TYPE_NOT_GRANTED;
            services.client.grants.clear();
            services.client.answerDel(true);
            QVERIFY(desk.test.looksBusy());
            QTRY_VERIFY(desk.test.looksIdle());
            QCOMPARE(desk.table()->itemText(1, 4), QString());
            QVERIFY(tipTexts().isEmpty());
            QCOMPARE(desk.test.navigator()->currentItem()->text(0), QStringLiteral("账号授权"));
            QVERIFY(desk.pointer.click(*desk.test.closeButton()));
            QTRY_VERIFY(desk.test.dialog.isHidden());
        });
        QVERIFY(done);
    }

    void aUserGrantsTwoAccountsInTheBatchTab()
    {
        Desk desk;
        FakeServices& services = desk.test.services;
        const bool done = desk.open([&] {
            QTest::keyClick(desk.test.dialog.windowHandle(), Qt::Key_Tab, Qt::ControlModifier);
            QTRY_COMPARE(desk.test.dialog.shownPage()->tabControl()->currentTabIndex(), 1);
            QTRY_VERIFY(desk.table()->isVisible());
            for (const int row : {0, 2}) {
                QVERIFY(desk.pointer.click(*desk.table()->itemWidget(row, 0)));
                QTRY_COMPARE(desk.table()->itemText(row, 4), QStringLiteral("已修改 未授权"));
            }
            auto* grantee =
                desk.test.dialog.findChild<KZ::CComboBox*>(QStringLiteral("halden_batch_grantee"));
            QVERIFY(desk.pointer.click(*grantee->lineEdit()));
            QTRY_VERIFY(grantee->lineEdit()->hasFocus());
            QTest::keyClicks(grantee->lineEdit(), QStringLiteral("bob"));
            QVERIFY(services.client.checkedUsers.isEmpty());
            QTest::keyClick(desk.test.dialog.windowHandle(), Qt::Key_Tab);
            QCOMPARE(services.client.checkedUsers, QStringList(QStringLiteral("bob")));
            QCOMPARE(desk.table()->itemText(2, 5), QStringLiteral("bob"));

            auto* button =
                desk.test.dialog.findChild<QPushButton*>(QStringLiteral("halden_batch_authorize"));
            auto* menu = desk.test.dialog.findChild<QMenu*>(QStringLiteral("halden_batch_menu"));
            QVERIFY(desk.pointer.click(*button));
            QTRY_VERIFY(menu->isVisible());
            QTest::keyClick(menu->windowHandle(), Qt::Key_Up);
            QTest::keyClick(menu->windowHandle(), Qt::Key_Return);
            QTRY_COMPARE(services.client.addAuths.size(), 2);
            QVERIFY(services.client.addAuths[0].toServer);
            QVERIFY(desk.test.looksBusy());

            services.client.answerAdd(true);
            services.client.answerAdd(false, QStringLiteral("账号正在交易"));
            QTRY_VERIFY(desk.test.looksIdle());
            QTRY_COMPARE(tipTexts(),
                         QStringList({QStringLiteral("权限出错！错误信息：账号正在交易"),
                                      QStringLiteral("授权成功")}));
            QVERIFY(!desk.table()->isItemChecked(0, 0));
        });
        QVERIFY(done);
    }

    void aResultAfterClosingIsToldAndTheNextOpeningIsIdle()
    {
        Desk desk;
        FakeServices& services = desk.test.services;
        QWidget client;
        client.setWindowTitle(QStringLiteral("client"));
        client.resize(500, 300);
        client.show();
        QVERIFY(QTest::qWaitForWindowActive(&client));
        const auto account = services.user.accounts[1];
        services.grant(account, QStringLiteral("bob"), QDate(2026, 3, 2), QDate(2026, 3, 9));
        QVERIFY(desk.open([&] {
            auto* button = desk.table()->itemWidget(1, 7)->findChild<QPushButton*>();
            QVERIFY(desk.pointer.click(*button));
            QTRY_COMPARE(services.client.delAuths.size(), 1);
            QVERIFY(desk.pointer.click(*desk.test.closeButton()));
            QTRY_VERIFY(desk.test.dialog.isHidden());
        }));
        QVERIFY(QTest::qWaitForWindowActive(&client));
        services.client.answerDel(false, QStringLiteral("账号正在交易"));
        QTRY_COMPARE(tipTexts(),
                     QStringList(QStringLiteral("取消授权失败。错误信息：账号正在交易")));
        KZ::CMessageTip::closeAll();
        QVERIFY(desk.open([&] {
            QVERIFY(desk.test.looksIdle());
            QCOMPARE(desk.table()->itemText(1, 4), QStringLiteral("bob"));
        }));
    }

    void aUserReachesEveryNodeOfTheTree()
    {
        Desk desk;
        const bool done = desk.open([&] {
            GW::CAuthSettingNavigator* tree = desk.test.navigator();
            QTest::keyClick(desk.test.dialog.windowHandle(), Qt::Key_PageDown, Qt::ControlModifier);
            QCOMPARE(desk.test.dialog.shownPage()->key(),
                     desk.test.services.user.accounts[0]->key());
            const QRect place = tree->visualItemRect(tree->topLevelItem(2));
            QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, place.center());
            QCOMPARE(desk.test.dialog.shownPage()->pageId(), 203);
            QVERIFY(!tree->hasFocus());
        });
        QVERIFY(done);
    }
};

int main(int argc, char** argv)
{
    return runTest<AccountsEndToEndTest>(argc, argv);
}

#include "AccountsEndToEndTest.moc"
