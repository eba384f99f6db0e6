#include "authsetting/shell/NavigatorFiller.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/keyboard/SoftKeyboardLineEdit.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/MediumNormalButton.h"
#include "kit/widgets/PushButton.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/authsetting/TabPageTools.h"
#include "tests/embedding/XPointer.h"
#include "tests/support/TipTestCase.h"

#include <QMenu>
#include <QTableView>
#include <QTemporaryDir>
#include <QWindow>

#include <climits>
#include <functional>

namespace {

/// The dialog as a user has it before him, on the page that a test asks for.
struct Desk
{
    Desk()
    {
        test.dialog.setNavigatorFiller(GW::fillNavigator);
        test.services.config.addPlatform(1, QStringLiteral("期货平台"));
        for (const char* id : {"1001", "1002", "1003"})
            test.services.user.addAccount(1, 1, "9000", id, mbservice::AUTH_TYPE_NOT_GRANTED);
        test.services.client.subUsers = {QStringLiteral("night"), QStringLiteral("ops")};
        test.services.client.activeSubUsers = {QStringLiteral("night"), QStringLiteral("ops")};
    }

    /// Opens the dialog modally and does `work` in it; whether that came to its end.
    bool open(int pageId, int subPageId, const QString& key, const std::function<void()>& work)
    {
        bool done = false;
        QTimer::singleShot(0, &test.dialog, [&] {
            if (QTest::qWaitForWindowActive(&test.dialog)) {
                work();
                done = true;
            }
            test.dialog.close();
        });
        GW::CAuthSettingDialog::showSettingPage(pageId, subPageId, key, 0);
        return done;
    }

    template <class Widget>
    Widget* part(int id)
    {
        return byId<Widget>(test.currentTab(), id);
    }

    KZ::COddEvenRowTable* table() { return test.currentTab()->findChild<KZ::COddEvenRowTable*>(); }

    QPushButton* cornerButton(int id)
    {
        return test.dialog.shownPage()->findChild<QPushButton*>(
            QStringLiteral("halden_corner_button_%1").arg(id));
    }

    void pressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(test.dialog.windowHandle(), key, modifiers);
    }

    void type(const QString& text)
    {
        for (const QChar character : text)
            QTest::keyClick(test.dialog.windowHandle(), character.toLatin1());
    }

    /// Presses the button and chooses the last entry of its menu.
    void grantOnServer(const KZ::CMediumNormalButton& button)
    {
        auto* menu = test.currentTab()->findChild<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
        QVERIFY(pointer.click(button));
        QTRY_VERIFY(menu->isVisible());
        QTest::keyClick(menu->windowHandle(), Qt::Key_Up);
        QTest::keyClick(menu->windowHandle(), Qt::Key_Return);
    }

    DialogUnderTest test;
    XPointer pointer;
};

} // namespace

/// One account, import and restricted users, each with a real pointer on a real X server.
class TabPagesEndToEndTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aUserGrantsOneAccountWithALimitAndTakesItBack()
    {
        Desk desk;
        FakeServices& services = desk.test.services;
        const auto account = services.user.accounts[1];
        QVERIFY(desk.open(201, 20101, account->key(), [&] {
            auto* grantee = desk.test.currentTab()->findChild<KZ::CComboBox*>();
            QVERIFY(desk.pointer.click(*grantee->lineEdit()));
            QTRY_VERIFY(grantee->lineEdit()->hasFocus());
            desk.type(QStringLiteral("friend"));
            QVERIFY(desk.pointer.click(*desk.table()->itemWidget(0, 0)));
            QTRY_VERIFY(desk.table()->isItemChecked(0, 0));
            QCOMPARE(services.client.checkedUsers, QStringList(QStringLiteral("friend")));
            QTRY_VERIFY(desk.table()->view()->hasFocus());
            desk.pressKey(Qt::Key_Down);
            desk.pressKey(Qt::Key_Return);
            QTRY_VERIFY(desk.table()->view()->findChild<QLineEdit*>());
            desk.pressKey(Qt::Key_A, Qt::ControlModifier);
            desk.type(QStringLiteral("50.5"));
            desk.pressKey(Qt::Key_Return);
            QTRY_COMPARE(desk.table()->itemText(0, 2), QStringLiteral("50.50"));

            auto* button = desk.part<KZ::CMediumNormalButton>(1);
            desk.grantOnServer(*button);
            QTRY_COMPARE(services.client.addAuths.size(), 1);
            QCOMPARE(services.client.addAuths.first().grantee, QStringLiteral("friend"));
            QCOMPARE(services.client.addAuths.first().limit.availableMarginRatio, 0.505);
            QVERIFY(desk.test.looksBusy());

            services.grant(account, QStringLiteral("friend"), testToday(), testToday().addDays(7));
            services.client.answerAdd(true);
            QTRY_VERIFY(desk.test.looksIdle());
            QTRY_COMPARE(tipTexts(), QStringList(QStringLiteral("授权成功")));
            KZ::CMessageTip::closeAll();
            QCOMPARE(button->text(), QStringLiteral("取消授权"));
            QVERIFY(desk.pointer.click(*button));
            QTRY_COMPARE(services.client.delAuths.size(), 1);
            services.client.grants.clear();
            account->authType = mbservice::AUTH_TYPE_NOT_GRANTED;
            services.client.answerDel(true);
            QTRY_VERIFY(desk.test.looksIdle());
            QCOMPARE(button->text(), QStringLiteral("授权"));
            QVERIFY(button->isEnabled());
        }));
    }

    void tabLeadsThroughTheFormOfOneAccount()
    {
        Desk desk;
        QVERIFY(desk.open(201, 20101, desk.test.services.user.accounts[0]->key(), [&] {
            auto* grantee = desk.test.currentTab()->findChild<KZ::CComboBox*>();
            grantee->setEditText(QStringLiteral("friend"));
            grantee->setFocus();
            const QVector<QWidget*> stops{
                desk.part<KZ::CSoftCalendarLineEdit>(4), desk.part<KZ::CSoftCalendarLineEdit>(5),
                desk.table()->view(), desk.part<KZ::CMediumNormalButton>(1)};
            for (QWidget* stop : stops) {
                // Within a date Tab goes from the year to the month and to the day first.
                const QWidget* before = QApplication::focusWidget();
                for (int presses = 0; presses < 3 && QApplication::focusWidget() == before;
                     ++presses)
                    desk.pressKey(Qt::Key_Tab);
                QCOMPARE(QApplication::focusWidget(), stop);
            }
        }));
    }

    void aUserImportsAFile()
    {
        Desk desk;
        FakeServices& services = desk.test.services;
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("grant.taa")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(desk.open(202, INT_MAX, QString(), [&] {
            {
                ModalDriver dialogs(&desk.test.dialog);
                dialogs.answerFile(file.fileName());
                dialogs.answerPassword(QStringLiteral("pw"));
                desk.pressKey(Qt::Key_O, Qt::ControlModifier);
                QTRY_COMPARE(services.client.imports.size(), 1);
            }
            QVERIFY(desk.test.looksBusy());
            const auto received =
                services.user.addAccount(1, 1, "9000", "2001", mbservice::AUTH_TYPE_GRANTED_TO_ME);
            Q_EMIT services.client.sigValidAuth(received->key(), QStringLiteral("s"), true, {});
            QTRY_VERIFY(desk.test.looksIdle());
            QTRY_COMPARE(tipTexts(), QStringList(QStringLiteral("导入成功！")));
            QCOMPARE(desk.table()->itemText(0, 2), QStringLiteral("2001"));
            KZ::CMessageTip::closeAll();

            services.client.importResult = 1;
            ModalDriver dialogs(&desk.test.dialog);
            dialogs.answerFile(file.fileName());
            dialogs.answerPassword(QStringLiteral("wrong"));
            QVERIFY(desk.pointer.click(*desk.cornerButton(0)));
            QTRY_COMPARE(tipTexts(), QStringList({QStringLiteral("导入失败！授权文件解密出错。"),
                                                  QStringLiteral("导入失败！授权文件格式错误")}));
            QVERIFY(desk.test.looksIdle());
        }));
    }

    void aUserDisablesOneSubUserAndEnablesAll()
    {
        Desk desk;
        FakeServices& services = desk.test.services;
        QVERIFY(desk.open(203, INT_MAX, QString(), [&] {
            QVERIFY(desk.pointer.click(*desk.table()->itemWidget(1, 3)));
            QTRY_COMPARE(services.client.setSubUsers.size(), 1);
            QCOMPARE(services.client.setSubUsers.first().user, QStringLiteral("ops"));
            services.client.activeSubUsers.remove(QStringLiteral("ops"));
            Q_EMIT services.client.sigSetSubUserResult(QStringLiteral("ops"), false, true, {});
            QTRY_VERIFY(desk.test.looksIdle());
            QCOMPARE(desk.table()->itemText(1, 2), QStringLiteral("已禁用"));

            QVERIFY(desk.pointer.click(*desk.cornerButton(0)));
            QTRY_COMPARE(services.client.setSubUsers.size(), 3);
            QVERIFY(services.client.setSubUsers.last().enable);
            services.client.activeSubUsers.insert(QStringLiteral("ops"));
            Q_EMIT services.client.sigSetSubUserResult(QStringLiteral("night"), true, true, {});
            Q_EMIT services.client.sigSetSubUserResult(QStringLiteral("ops"), true, true, {});
            QTRY_VERIFY(desk.test.looksIdle());
            QTRY_COMPARE(desk.table()->itemText(1, 2), QStringLiteral("已启用"));
        }));
    }

    void aUserEnablesASubUserWithAPasswordAndGrantsToHim()
    {
        Desk desk;
        FakeServices& services = desk.test.services;
        services.client.activeSubUsers.remove(QStringLiteral("ops"));
        const auto account = services.user.accounts[0];
        QVERIFY(desk.open(203, 20401, QStringLiteral("ops"), [&] {
            auto* password = desk.part<KZ::CSoftKeyboardLineEdit>(1);
            QVERIFY(desk.pointer.click(*password));
            QTRY_VERIFY(password->hasFocus());
            desk.type(QStringLiteral("secret"));
            desk.pressKey(Qt::Key_Tab);
            desk.type(QStringLiteral("secret"));
            QVERIFY(desk.pointer.click(*desk.part<KZ::CPushButton>(1)));
            QTRY_COMPARE(services.client.setSubUsers.size(), 1);
            QCOMPARE(services.client.updateSubUsers.first().digest,
                     QStringLiteral("e5e9fa1ba31ecd1ae84f75caaa474f3a663f05f4"));
            services.client.activeSubUsers.insert(QStringLiteral("ops"));
            Q_EMIT services.client.sigUpdatesubuserResult(QStringLiteral("ops"), {}, true, {});
            Q_EMIT services.client.sigSetSubUserResult(QStringLiteral("ops"), true, true, {});
            QTRY_VERIFY(desk.test.looksIdle());
            QTRY_VERIFY(desk.table()->isEnabled());

            QVERIFY(desk.pointer.click(*desk.table()->itemWidget(0, 0)));
            QTRY_COMPARE(desk.table()->itemText(0, 4), QStringLiteral("已修改, 未授权"));
            desk.grantOnServer(*desk.part<KZ::CMediumNormalButton>(2));
            QTRY_COMPARE(services.client.addAuths.size(), 1);
            services.grant(account, QStringLiteral("ops"), testToday(), testToday().addDays(7));
            services.client.answerAdd(true);
            QTRY_VERIFY(desk.test.looksIdle());
            QTRY_COMPARE(desk.table()->itemText(0, 4), QStringLiteral("已授权"));

            KZ::CMessageTip::closeAll();
            QTRY_VERIFY(desk.table()->itemWidget(0, 8)->isVisible());
            QVERIFY(desk.pointer.click(*desk.table()->itemWidget(0, 8)));
            QTRY_COMPARE(services.client.delAuths.size(), 1);
            services.client.grants.clear();
            services.client.answerDel(true);
            QTRY_COMPARE(tipTexts(), QStringList(QStringLiteral("取消授权成功")));
            QCOMPARE(desk.table()->itemText(0, 4), QStringLiteral("未授权"));
        }));
    }
};

int main(int argc, char** argv)
{
    return runTest<TabPagesEndToEndTest>(argc, argv);
}

#include "TabPagesEndToEndTest.moc"
