#include "authsetting/authorize/AuthSettingAccountsAuthorizeTabPage.h"
#include "authsetting/authorize/AuthSettingSingleAccountAuthorizeTabPage.h"
#include "authsetting/services/Services.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/subusers/AuthSettingRestrictedUsersManageTabPage.h"
#include "authsetting/subusers/AuthSettingSingleRestrictedUserGeneralTabPage.h"
#include "kit/keyboard/SoftKeyboardLineEdit.h"
#include "kit/widgets/ComboBox.h"
#include "tests/authsetting/TabPageTools.h"
#include "tests/support/TipTestCase.h"

#include <functional>

namespace {

const QString busy = QStringLiteral("busy");
const QString idle = QStringLiteral("idle");
const QString tree = QStringLiteral("tree");
const QString addAuth = QStringLiteral("addAuth");
const QString delAuth = QStringLiteral("delAuth");
const QString setSubUser = QStringLiteral("setSubUser");
const QString exportAuth = QStringLiteral("exportAuth");
const QString message = QStringLiteral("message");

/// Notes the account messages among the client's calls.
class NotingMessages : public FakeMsgService
{
public:
    explicit NotingMessages(QStringList& calls) : m_calls(calls) {}

    int showAccountMsg(QString text, QString accountKey, GW::EMsgTypeDef type,
                       mbservice::MsgLevel level) override
    {
        m_calls.append(message + QLatin1Char(' ') + accountKey.section(QLatin1Char('|'), 3));
        return FakeMsgService::showAccountMsg(text, accountKey, type, level);
    }

private:
    QStringList& m_calls;
};

/// Stands in the dialog's place and notes what a page asks of it among the client's calls.
class NotingDialog : public EventRecorder
{
public:
    explicit NotingDialog(QStringList& calls) : m_calls(calls) {}

    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override
    {
        if (eventId == GW::EVENT_SET_WAITING)
            m_calls.append(param2 == 1 ? busy : idle);
        if (eventId == GW::EVENT_RELOAD_NAVIGATOR) {
            m_calls.append(tree);
            tipsAtTree.append(int(tipTexts().size()));
            if (onTree)
                onTree();
        }
        return EventRecorder::handleEvent(eventId, param1, param2, text, data);
    }

    /// How many tips were shown when the page asked for a new tree.
    QVector<int> tipsAtTree;
    std::function<void()> onTree;

private:
    QStringList& m_calls;
};

/// Two free accounts, 1000 and 1001, one granted to "ops", 1002, and the enabled sub-user "ops".
struct Desk
{
    Desk()
    {
        GW::installServices(&services.client, &services.user, &services.config, &messages,
                            &services.time);
        services.client.subUsers = {QStringLiteral("ops")};
        services.client.activeSubUsers = {QStringLiteral("ops")};
        for (int number = 0; number < 3; ++number)
            accounts.append(services.user.addAccount(1, 1, "9000", std::to_string(1000 + number),
                                                     mbservice::AUTH_TYPE_NOT_GRANTED));
        services.grant(accounts[2], QStringLiteral("ops"), testToday(), testToday().addDays(9));
    }

    /// The calls since the last time, the messages shortened to their accounts.
    QStringList calls() { return std::exchange(services.client.calls, {}); }

    template <class Page>
    KZ::COddEvenRowTable* table(const Page& page) const
    {
        return page.template findChild<KZ::COddEvenRowTable*>();
    }

    /// Lets answers come late enough to be shown at once.
    void wait() { clock.now += 1; }

    FakeServices services;
    NotingMessages messages{services.client.calls};
    StandingClock clock;
    NotingDialog dialog{services.client.calls};
    QVector<boost::shared_ptr<GW::CAccount>> accounts;
};

QString messageOf(const char* account)
{
    return message + QLatin1Char(' ') + QString::fromLatin1(account);
}

} // namespace

/// In which order the pages speak with the dialog, the client, the message area and the user.
class RequestOrderTest : public TipTestCase
{
    Q_OBJECT

    static void tickBoth(Desk& desk, GW::CAuthSettingAccountsAuthorizeTabPage& page)
    {
        page.reloadData();
        page.findChild<KZ::CComboBox*>()->setEditText(QStringLiteral("bob"));
        for (const int row : {0, 1})
            desk.table(page)->setItemChecked(row, 0, true);
    }

    static void tickBoth(Desk& desk, GW::CAuthSettingSingleRestrictedUserGeneralTabPage& page)
    {
        page.setKey(QStringLiteral("ops"));
        page.reloadData();
        // The editors show the days of the row that was filled last, a grant that stands.
        for (const int row : {0, 1}) {
            desk.table(page)->setItemChecked(row, 0, true);
            page.handleEvent(59, 100 + row, 1, QString(), nullptr);
        }
    }

private Q_SLOTS:
    void theBatchTabAnnouncesEachAccountRightAfterItsRequest()
    {
        Desk desk;
        GW::CAuthSettingAccountsAuthorizeTabPage page(&desk.dialog);
        tickBoth(desk, page);
        page.onServerAuthTriggered(false);
        QCOMPARE(desk.calls(),
                 QStringList({busy, addAuth, messageOf("1000"), addAuth, messageOf("1001")}));
    }

    void theBatchTabReloadsThenTheTreeThenTellsTheSuccess()
    {
        Desk desk;
        GW::CAuthSettingAccountsAuthorizeTabPage page(&desk.dialog);
        tickBoth(desk, page);
        page.onServerAuthTriggered(false);
        desk.calls();
        desk.wait();
        desk.services.user.accounts.removeLast();
        desk.dialog.onTree = [&] { QCOMPARE(desk.table(page)->rowCount(), 2); };
        desk.services.client.answerAdd(true);
        QCOMPARE(desk.calls(), QStringList());
        desk.services.client.answerAdd(true);
        QCOMPARE(desk.calls(), QStringList({idle, tree}));
        QCOMPARE(desk.dialog.tipsAtTree, QVector<int>{0});
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("授权成功")));
    }

    void theBatchTabWritesTheFileWhenTheDialogIsIdleAgain()
    {
        Desk desk;
        GW::CAuthSettingAccountsAuthorizeTabPage page(&desk.dialog);
        tickBoth(desk, page);
        page.authPasswordForFile(QStringLiteral("pw"));
        desk.calls();
        desk.wait();
        desk.services.client.answerAdd(true);
        desk.services.client.answerAdd(true);
        QCOMPARE(desk.calls(), QStringList({idle, exportAuth, tree}));
        QCOMPARE(desk.dialog.tipsAtTree, QVector<int>{0});
    }

    void theBatchTabsCancelBeginsBusy()
    {
        Desk desk;
        GW::CAuthSettingAccountsAuthorizeTabPage page(&desk.dialog);
        page.reloadData();
        page.handleEvent(GW::EVENT_CANCEL_AUTH, 2, 0, QString(), nullptr);
        QCOMPARE(desk.calls(), QStringList({busy, delAuth}));
        desk.wait();
        desk.services.user.accounts.clear();
        desk.dialog.onTree = [&] { QCOMPARE(desk.table(page)->rowCount(), 0); };
        desk.services.client.answerDel(true);
        QCOMPARE(desk.calls(), QStringList({idle, tree}));
    }

    void theSingleAccountTabSpeaksInTheSameOrder()
    {
        Desk desk;
        GW::CAuthSettingSingleAccountAuthorizeTabPage page(true, &desk.dialog);
        page.setKey(desk.accounts[0]->key());
        page.reloadData();
        page.findChild<KZ::CComboBox*>()->setEditText(QStringLiteral("bob"));
        page.onServerAuthTriggered(false);
        QCOMPARE(desk.calls(), QStringList({busy, addAuth, messageOf("1000")}));
        desk.wait();
        desk.dialog.onTree = [&] {
            QCOMPARE(page.findChild<KZ::CComboBox*>()->currentText(), QString());
        };
        desk.services.client.answerAdd(true);
        QCOMPARE(desk.calls(), QStringList({idle, tree}));
        QCOMPARE(desk.dialog.tipsAtTree, QVector<int>{0});
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("授权成功")));
    }

    void theSingleAccountTabsCancelBeginsBusy()
    {
        Desk desk;
        GW::CAuthSettingSingleAccountAuthorizeTabPage page(true, &desk.dialog);
        page.setKey(desk.accounts[2]->key());
        page.reloadData();
        page.handleEvent(5, 1, 0, QString(), nullptr);
        QCOMPARE(desk.calls(), QStringList({busy, delAuth}));
        desk.wait();
        desk.services.client.grants.clear();
        desk.dialog.onTree = [&] {
            QCOMPARE(page.findChild<KZ::CComboBox*>()->currentText(), QString());
        };
        desk.services.client.answerDel(true);
        QCOMPARE(desk.calls(), QStringList({idle, tree}));
    }

    void theListOfUsersBeginsBusyForEachOfThem()
    {
        Desk desk;
        desk.services.client.subUsers.append(QStringLiteral("aux"));
        GW::CAuthSettingRestrictedUsersManageTabPage page(&desk.dialog);
        page.reloadData();
        page.handleEvent(5, 100, 0, QString(), nullptr);
        QCOMPARE(desk.calls(), QStringList({busy, setSubUser}));
        page.handleEvent(5, 1, 0, QString(), nullptr);
        QCOMPARE(desk.calls(), QStringList({busy, setSubUser, busy, setSubUser}));
    }

    void theListOfUsersShowsTheOutcomeBeforeTheTree()
    {
        Desk desk;
        GW::CAuthSettingRestrictedUsersManageTabPage page(&desk.dialog);
        page.reloadData();
        QString stateAtTree;
        desk.dialog.onTree = [&] { stateAtTree = desk.table(page)->itemText(0, 2); };
        for (const bool ok : {true, false}) {
            page.handleEvent(5, 100, 0, QString(), nullptr);
            desk.calls();
            desk.wait();
            desk.services.client.activeSubUsers.clear();
            Q_EMIT desk.services.client.sigSetSubUserResult(QStringLiteral("ops"), false, ok, {});
            QCOMPARE(desk.calls(), QStringList({idle, tree}));
            QCOMPARE(stateAtTree, QStringLiteral("已禁用"));
        }
        QCOMPARE(desk.dialog.tipsAtTree, QVector<int>({0, 1}));
    }

    void aNewPasswordGoesOutBeforeTheDialogIsBusy()
    {
        Desk desk;
        desk.services.client.activeSubUsers.clear();
        GW::CAuthSettingSingleRestrictedUserGeneralTabPage page(&desk.dialog);
        page.setKey(QStringLiteral("ops"));
        page.reloadData();
        for (KZ::CSoftKeyboardLineEdit* edit : page.findChildren<KZ::CSoftKeyboardLineEdit*>())
            edit->setText(QStringLiteral("secret"));
        page.handleEvent(5, 1, 0, QString(), nullptr);
        QCOMPARE(desk.calls(), QStringList({QStringLiteral("updateSubUser"), busy, setSubUser}));
    }

    void aChangedStateReloadsTheTabBeforeTheTree()
    {
        Desk desk;
        GW::CAuthSettingSingleRestrictedUserGeneralTabPage page(&desk.dialog);
        page.setKey(QStringLiteral("ops"));
        page.reloadData();
        desk.services.user.accounts.removeLast();
        desk.dialog.onTree = [&] { QCOMPARE(desk.table(page)->rowCount(), 2); };
        Q_EMIT desk.services.client.sigSetSubUserResult(QStringLiteral("ops"), true, true, {});
        QCOMPARE(desk.calls(), QStringList({idle, tree}));
    }

    void theUsersTabAnnouncesEachAccountRightAfterItsRequest()
    {
        Desk desk;
        GW::CAuthSettingSingleRestrictedUserGeneralTabPage page(&desk.dialog);
        tickBoth(desk, page);
        page.onServerAuthTriggered(false);
        QCOMPARE(desk.calls(),
                 QStringList({busy, addAuth, messageOf("1000"), addAuth, messageOf("1001")}));
        desk.wait();
        desk.services.user.accounts.removeLast();
        desk.dialog.onTree = [&] { QCOMPARE(desk.table(page)->rowCount(), 2); };
        // Delivered twice, so the first account's answer uses the count up.
        desk.services.client.answerAdd(true);
        QCOMPARE(desk.calls(), QStringList({idle, tree}));
        // Unlike the other tabs this one tells each account's outcome, and that at once.
        QCOMPARE(desk.dialog.tipsAtTree, QVector<int>{2});
    }

    void theUsersTabWritesItsFileTwiceBeforeTheTree()
    {
        Desk desk;
        GW::CAuthSettingSingleRestrictedUserGeneralTabPage page(&desk.dialog);
        tickBoth(desk, page);
        ModalDriver dialogs;
        dialogs.answerFile(QStringLiteral("/tmp/order.taa"));
        dialogs.answerPassword(QStringLiteral("pw"));
        page.onFileAuthTriggered(false);
        QCOMPARE(desk.calls(),
                 QStringList({busy, addAuth, messageOf("1000"), addAuth, messageOf("1001")}));
        desk.wait();
        // Delivered twice, so the first account's answer uses the count up; the file waits for all.
        desk.services.client.answerAdd(true, QString(), QStringLiteral("ref-0"));
        QCOMPARE(desk.calls(), QStringList({idle, tree}));
        desk.services.client.answerAdd(true, QString(), QStringLiteral("ref-1"));
        QCOMPARE(desk.calls(), QStringList({idle, exportAuth, exportAuth, tree, idle, exportAuth,
                                            exportAuth, tree}));
    }

    void theUsersTabTellsACancelAfterTheTree()
    {
        Desk desk;
        GW::CAuthSettingSingleRestrictedUserGeneralTabPage page(&desk.dialog);
        page.setKey(QStringLiteral("ops"));
        page.reloadData();
        page.handleEvent(5, 100002, 0, QString(), nullptr);
        QCOMPARE(desk.calls(), QStringList({busy, delAuth}));
        desk.wait();
        desk.services.client.grants.clear();
        desk.dialog.onTree = [&] {
            QCOMPARE(desk.table(page)->itemText(2, 5), QString());
            QVERIFY(!desk.table(page)->isItemChecked(2, 0));
        };
        desk.services.client.answerDel(true);
        QCOMPARE(desk.calls(), QStringList({idle, tree}));
        QCOMPARE(desk.dialog.tipsAtTree, QVector<int>{0});
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("取消授权成功")));
    }
};

int main(int argc, char** argv)
{
    return runTest<RequestOrderTest>(argc, argv);
}

#include "RequestOrderTest.moc"
