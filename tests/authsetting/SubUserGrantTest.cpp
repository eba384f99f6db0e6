#include "authsetting/services/AccountKey.h"
#include "authsetting/services/Services.h"
#include "tests/authsetting/SubUserFixture.h"
#include "tests/support/TipTestCase.h"

#include <QRegularExpression>

namespace {

const QString written = QStringLiteral("生成授权文件成功");
const QString selectOne = QStringLiteral("至少需要选择一个账号");

/// Answers every grant before it returns, and takes a second for each.
class SlowPromptClient : public FakeAuthClient
{
public:
    explicit SlowPromptClient(StandingClock& clock) : m_clock(clock) {}

    void addAuth(QString grantee, const mbservice::CAccountInfo& account, GW::CAuthLimit& limit,
                 QVariant tag, bool toServer) override
    {
        FakeAuthClient::addAuth(grantee, account, limit, tag, toServer);
        m_clock.now += 1;
        answerAdd(true);
    }

private:
    StandingClock& m_clock;
};

void tickBoth(SubUserFixture& test)
{
    test.page->reloadData();
    test.setDays(QDate(2026, 3, 10), QDate(2026, 3, 12));
    // Against key order, which the requests follow all the same.
    test.tick(1);
    test.setDays(QDate(2026, 3, 11), QDate(2026, 3, 13));
    test.tick(0);
}

} // namespace

/// How the tab of one restricted user grants the pending accounts.
class SubUserGrantTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theButtonOpensTheMenuBelowItself()
    {
        SubUserFixture test;
        test.top.resize(900, 500);
        test.top.show();
        test.page->reloadData();
        QVERIFY(test.deliver(5, 2));
        QVERIFY(test.menu()->isVisible());
        const KZ::CMediumNormalButton* button = test.grantButton();
        QCOMPARE(test.menu()->pos(), button->mapToGlobal(QPoint(0, button->height() + 1)));
        test.menu()->close();
    }

    void aGrantNeedsATickThatIsNotLocked()
    {
        SubUserFixture test;
        test.page->reloadData();
        QVERIFY(test.ticked(2));
        test.page->onServerAuthTriggered(false);
        VERIFY_TIP(test.grantButton(), selectOne, 1);
        KZ::CMessageTip::closeAll();
        test.page->onFileAuthTriggered(false);
        VERIFY_TIP(test.grantButton(), selectOne, 1);
        QVERIFY(test.services.client.calls.isEmpty());
        QVERIFY(test.top.events.isEmpty());
    }

    void aServerGrantSendsEveryPendingAccountInKeyOrder()
    {
        SubUserFixture test;
        tickBoth(test);
        test.page->onServerAuthTriggered(false);
        QCOMPARE(test.top.ids(), QVector<int>({GW::EVENT_SET_WAITING}));
        QCOMPARE(test.services.client.addAuths.size(), 2);
        for (int index = 0; index < 2; ++index) {
            const FakeAuthClient::AddAuth& sent = test.services.client.addAuths.at(index);
            QCOMPARE(sent.grantee, QStringLiteral("ops"));
            QVERIFY(mbservice::isSameAccount(sent.account, *test.accounts[index]));
            QCOMPARE(sent.limit.startTime, secondsOf(QDate(2026, 3, 11 - index)));
            QCOMPARE(sent.limit.endTime, secondsOf(QDate(2026, 3, 13 - index)));
            QCOMPARE(sent.limit.availableMarginRatio, GW::CAuthLimit::noMarginRatio);
            QCOMPARE(sent.tag, GW::requestTag(test.page));
            QVERIFY(sent.toServer);
            const FakeMsgService::Message& message = test.services.messages.messages.at(index);
            QCOMPARE(message.text, QStringLiteral("账户ops授权, 撤销所有执行任务"));
            QCOMPARE(message.accountKey, test.accounts[index]->key());
            QCOMPARE(int(message.type), 0);
            QCOMPARE(int(message.level), 1);
        }
        QCOMPARE(test.services.messages.messages.size(), 2);
    }

    void withoutAPendingAccountAServerGrantExportsNothing()
    {
        SubUserFixture test;
        test.page->reloadData();
        test.page->slotGetAuthPasswordFromServer(QStringLiteral("pw"));
        QVERIFY(test.services.client.calls.isEmpty());
        QVERIFY(test.top.events.isEmpty());
        QVERIFY(tipTexts().isEmpty());
        test.services.client.activeSubUsers.clear();
        test.page->reloadData();
        QCOMPARE(test.state()->text(), QStringLiteral("已禁用"));
    }

    void reloadsAreSkippedWhileAGrantIsUnderWay()
    {
        SubUserFixture test;
        tickBoth(test);
        test.page->onServerAuthTriggered(false);
        test.page->reloadData();
        QCOMPARE(test.cell(0, 4), QStringLiteral("已修改, 未授权"));
        test.wait();
        test.answer(0);
        test.answer(1);
        QCOMPARE(test.cell(0, 4), QStringLiteral("未授权"));
        test.services.client.activeSubUsers.clear();
        test.page->reloadData();
        QCOMPARE(test.state()->text(), QStringLiteral("已禁用"));
    }

    void eachResultFillsItsRowAndIsTold()
    {
        SubUserFixture test;
        tickBoth(test);
        test.page->onServerAuthTriggered(false);
        test.services.grant(test.accounts[0], QStringLiteral("ops"), QDate(2026, 3, 11),
                            QDate(2026, 3, 13));
        test.answer(0);
        QCOMPARE(rowTexts(test.table(), 0).mid(4, 2),
                 QStringList({QStringLiteral("已修改, 未授权"), QStringLiteral("ops")}));
        QVERIFY(test.ticked(0));
        QVERIFY(!test.table()->isItemCheckEnabled(0, 0));
        test.answer(1, false);
        // Twice each, because the grant connected the result once more.
        VERIFY_TIP(test.grantButton(),
                   QStringList({QStringLiteral("授权成功"), QStringLiteral("授权成功"),
                                QStringLiteral("授权失败！原因：reason"),
                                QStringLiteral("授权失败！原因：reason")}),
                   1);
    }

    void aServerGrantEndsWithAReloadThatForgetsEveryPendingAccount()
    {
        SubUserFixture test;
        tickBoth(test);
        test.page->onServerAuthTriggered(false);
        test.wait();
        test.answer(1, false);
        test.answer(0, false);
        QCOMPARE(test.cell(0, 4), QStringLiteral("未授权"));
        QCOMPARE(test.cell(1, 4), QStringLiteral("未授权"));
        QVERIFY(!test.ticked(0));
        QVERIFY(test.services.client.exports.isEmpty());
        QVERIFY(test.navigatorReloads() > 0);
    }

    void theEndIsTestedAfterEachDeliveryNotOnItsTransition()
    {
        SubUserFixture test;
        tickBoth(test);
        test.page->onServerAuthTriggered(false);
        test.wait();
        // Two deliveries per result and two accounts: the count is used up by the first result,
        // and the second one ends the grant twice more.
        test.answer(0);
        QCOMPARE(test.navigatorReloads(), 1);
        test.answer(1);
        QCOMPARE(test.navigatorReloads(), 3);
    }

    void everyGrantDeliversLaterResultsOnceMore()
    {
        SubUserFixture test;
        for (int grants = 1; grants <= 3; ++grants) {
            test.page->reloadData();
            test.setDays(QDate(2026, 3, 10), QDate(2026, 3, 12));
            test.tick(0);
            test.page->onServerAuthTriggered(false);
            test.wait();
            const int before = test.navigatorReloads();
            test.answer(grants - 1);
            QCOMPARE(test.navigatorReloads() - before, 1 + grants);
        }
    }

    void earlyResultsEndTheGrantOnceForEachOfThem()
    {
        SubUserFixture test;
        tickBoth(test);
        test.page->onServerAuthTriggered(false);
        test.clock.now += 0.68;
        test.answer(0);
        test.answer(1);
        QCOMPARE(test.navigatorReloads(), 0);
        QTRY_COMPARE(test.navigatorReloads(), 3);
    }

    void aRequestCarriesTheAccountsWholeRecord()
    {
        SubUserFixture test;
        test.accounts[0]->accountAlias = "alias";
        test.makePending(0);
        test.page->onServerAuthTriggered(false);
        const mbservice::CAccountInfo& sent = test.services.client.addAuths.first().account;
        QCOMPARE(sent.accountPrivate, std::string("secret 0"));
        QCOMPARE(sent.accountAlias, std::string("alias"));
        QCOMPARE(sent.accountType, 1);
    }

    void takingBackOneTickLeavesTheOthersPending()
    {
        SubUserFixture test;
        tickBoth(test);
        test.tick(1, false);
        QCOMPARE(test.cell(0, 4), QStringLiteral("已修改, 未授权"));
        QVERIFY(test.ticked(0));
        test.page->onServerAuthTriggered(false);
        QCOMPARE(test.services.client.addAuths.size(), 1);
        QVERIFY(mbservice::isSameAccount(test.services.client.addAuths.first().account,
                                         *test.accounts[0]));
    }

    void aClientMayAnswerBeforeItReturns()
    {
        StandingClock clock;
        FakeServices services;
        SlowPromptClient client(clock);
        client.activeSubUsers = {QStringLiteral("ops")};
        GW::installServices(&client, &services.user, &services.config, &services.messages,
                            &services.time);
        for (const char* number : {"1", "2", "3"})
            services.user.addAccount(1, 1, "9000", number, mbservice::AUTH_TYPE_NOT_GRANTED);
        EventRecorder top;
        GW::CAuthSettingSingleRestrictedUserGeneralTabPage page(&top);
        page.setKey(QStringLiteral("ops"));
        page.reloadData();
        for (int row = 0; row < 3; ++row) {
            page.findChild<KZ::COddEvenRowTable*>()->setItemChecked(row, 0, true);
            page.handleEvent(59, 100 + row, 1, QString(), nullptr);
        }
        page.onServerAuthTriggered(false);
        // The answers have forgotten what was pending before the last request went out.
        QCOMPARE(client.addAuths.size(), 3);
        QCOMPARE(client.addAuths.last().grantee, QStringLiteral("ops"));
        QCOMPARE(services.messages.messages.size(), 3);
        QCOMPARE(top.of(GW::EVENT_SET_WAITING).last().param2, 0);
    }

    void aLargeGrantCountsItsAnswers()
    {
        SubUserFixture test;
        const int count = 150;
        test.services.user.accounts.clear();
        for (int number = 0; number < count; ++number)
            test.services.user.addAccount(1, 1, "9000", "many" + std::to_string(number),
                                          mbservice::AUTH_TYPE_NOT_GRANTED);
        test.page->reloadData();
        for (int row = 0; row < count; ++row)
            test.tick(row);
        test.page->onServerAuthTriggered(false);
        test.answer(0);
        QVector<int> answered;
        for (const EventRecorder::Event& event : test.top.of(GW::EVENT_SHOW_PROGRESS)) {
            answered.append(event.param1);
            QCOMPARE(event.param2, count);
        }
        // Each delivery of an answer is counted.
        QCOMPARE(answered, QVector<int>({0, 1, 2}));
    }

    void otherPagesResultsChangeNothing()
    {
        SubUserFixture test;
        tickBoth(test);
        test.page->onServerAuthTriggered(false);
        test.wait();
        const FakeAuthClient::AddAuth request = test.services.client.addAuths.first();
        for (int times = 0; times < 3; ++times)
            Q_EMIT test.services.client.sigAddAuthResult(request.grantee, request.account,
                                                         request.limit, QStringLiteral("foreign"),
                                                         GW::requestTag(&test.top), true, {}, true);
        QCOMPARE(test.top.events.size(), 1);
        QCOMPARE(test.cell(0, 5), QString());
        QVERIFY(tipTexts().isEmpty());
    }

    void aFileGrantAsksForPathAndPassword()
    {
        SubUserFixture test;
        tickBoth(test);
        ModalDriver dialogs;
        dialogs.answerFile(QStringLiteral("/tmp/sub-user.taa"));
        dialogs.answerPassword(QStringLiteral("  file password "));
        test.page->onFileAuthTriggered(false);
        QCOMPARE(dialogs.titles,
                 QStringList({QStringLiteral("选择保存路径"), QStringLiteral("输入授权密码")}));
        QCOMPARE(dialogs.filters, QStringList(QStringLiteral("Auth Files(*.taa)")));
        QCOMPARE(dialogs.echoModes, QVector<QLineEdit::EchoMode>({QLineEdit::Password}));
        const QRegularExpression name(
            QStringLiteral("^vell_auth_\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d$"));
        QVERIFY(name.match(dialogs.proposals.first()).hasMatch());
        QCOMPARE(test.services.client.addAuths.size(), 2);
        QVERIFY(!test.services.client.addAuths.first().toServer);
        QCOMPARE(test.services.messages.messages.size(), 2);
        test.wait();
        test.answer(0);
        test.answer(1);
        QCOMPARE(test.services.client.exports.first().password, QStringLiteral("file password"));
    }

    void aCancelledFileGrantLeavesThePendingAccounts()
    {
        SubUserFixture test;
        tickBoth(test);
        {
            ModalDriver dialogs;
            dialogs.answerFile(QString());
            test.page->onFileAuthTriggered(false);
        }
        {
            ModalDriver dialogs;
            dialogs.answerFile(QStringLiteral("/tmp/sub-user.taa"));
            dialogs.expect([&test](QWidget* window) {
                test.page->reloadData();
                QCOMPARE(test.cell(0, 4), QStringLiteral("已修改, 未授权"));
                window->findChild<QPushButton*>(QStringLiteral("halden_input_cancel"))->click();
            });
            test.page->onFileAuthTriggered(false);
        }
        QCOMPARE(test.cell(0, 4), QStringLiteral("已修改, 未授权"));
        QVERIFY(test.services.client.calls.isEmpty());
        test.page->reloadData();
        QCOMPARE(test.cell(0, 4), QStringLiteral("未授权"));
    }

    void thePageMayDieUnderThePasswordDialog()
    {
        SubUserFixture test;
        tickBoth(test);
        ModalDriver dialogs;
        dialogs.answerFile(QStringLiteral("/tmp/sub-user.taa"));
        dialogs.expect([&test](QWidget*) { delete test.page; });
        test.page->onFileAuthTriggered(false);
        QVERIFY(test.services.client.addAuths.isEmpty());
    }

    void aFileIsWrittenTwiceForEachEndOfItsGrant()
    {
        SubUserFixture test;
        test.makePending(0);
        test.sendFileGrant();
        test.wait();
        // One account, two deliveries: two ends with two writings each.
        test.answer(0);
        QCOMPARE(test.services.client.exports.size(), 4);
        VERIFY_TIP(test.grantButton(), QStringList({written, written, written, written}), 1);
        QCOMPARE(test.navigatorReloads(), 2);
        for (const FakeAuthClient::Export& file : test.services.client.exports) {
            QVERIFY(!file.oneGrantForm);
            QCOMPARE(file.path, QStringLiteral("/tmp/sub-user.taa"));
            QCOMPARE(file.password, QStringLiteral("pw"));
            QCOMPARE(file.grants.size(), 1);
        }
    }

    void everyFileGrantDeliversLaterResultsOnceMore()
    {
        SubUserFixture test;
        qsizetype before = 0;
        for (int grants = 1; grants <= 3; ++grants) {
            test.makePending(0);
            test.sendFileGrant();
            test.wait();
            test.answer(grants - 1);
            QCOMPARE(test.services.client.exports.size() - before, 2 * (1 + grants));
            before = test.services.client.exports.size();
        }
    }

    void whatAnEarlierGrantPutOffDoesNotEndTheNextOne()
    {
        SubUserFixture test;
        test.makePending(0);
        test.sendFileGrant();
        test.wait();
        // More ends than are followed literally, so that some are put off.
        for (int times = 0; times < 10; ++times)
            test.answer(0);
        test.tick(0);
        test.sendFileGrant();
        const qsizetype before = test.services.client.exports.size();
        QTest::qWait(2 * GW::CBurstGate::quietMs);
        QCOMPARE(test.services.client.exports.size(), before);
    }

    void aRefusedAccountIsLeftOutOfTheFile()
    {
        SubUserFixture test;
        tickBoth(test);
        test.sendFileGrant();
        test.answer(0, true, QStringLiteral("ref-0"));
        test.wait();
        test.answer(1, false, QStringLiteral("ref of a refusal"));
        const auto grants = test.services.client.exports.last().grants;
        QCOMPARE(grants.size(), 1);
        QCOMPARE(grants[0]->grantRef, QStringLiteral("ref-0"));
    }

    void whereEveryAccountIsRefusedThereIsNoFile()
    {
        SubUserFixture test;
        test.makePending(0);
        test.sendFileGrant();
        test.wait();
        test.answer(0, false, QString());
        QVERIFY(test.services.client.exports.isEmpty());
        const QStringList texts = tipTexts();
        QCOMPARE(texts.count(QStringLiteral("生成授权文件失败")), 4);
        QCOMPARE(texts.size(), 4);
        test.page->reloadData();
        QVERIFY2(!test.ticked(0), "the grant is over");
    }

    void aFileWaitsForTheLastAnswer()
    {
        SubUserFixture test;
        tickBoth(test);
        test.sendFileGrant();
        test.wait();
        test.answer(0);
        QVERIFY(test.services.client.exports.isEmpty());
        QVERIFY(tipTexts().isEmpty());
        test.page->reloadData();
        QVERIFY2(test.ticked(1), "the grant is still under way");
        test.answer(1);
        QCOMPARE(test.services.client.exports.last().grants.size(), 2);
    }

    void aFileHoldsTheGrantsInKeyOrderWithWhatTheirResultsBrought()
    {
        SubUserFixture test;
        tickBoth(test);
        test.sendFileGrant();
        test.answer(1, true, QStringLiteral("ref-1"));
        QCOMPARE(test.cell(1, 5), QStringLiteral("ref-1"));
        QCOMPARE(test.cell(0, 5), QString());
        test.wait();
        test.answer(0, true, QStringLiteral("ref-0"));
        const QVector<boost::shared_ptr<GW::CAuthDetail>> grants =
            test.services.client.exports.last().grants;
        QCOMPARE(grants.size(), 2);
        for (int index = 0; index < 2; ++index) {
            const GW::CAuthDetail& grant = *grants.at(index);
            QCOMPARE(grant.grantRef, QStringLiteral("ref-%1").arg(index));
            QCOMPARE(grant.grantor, QStringLiteral("trader01"));
            QCOMPARE(grant.grantee, QStringLiteral("ops"));
            QVERIFY(mbservice::isSameAccount(grant.account, *test.accounts[index]));
            QCOMPARE(grant.account.accountPrivate, "secret " + std::to_string(index));
            QCOMPARE(grant.limit.startTime, secondsOf(QDate(2026, 3, 11 - index)));
            QCOMPARE(grant.limit.endTime, secondsOf(QDate(2026, 3, 13 - index)));
        }
    }

    void aFileHoldsTheAccountsAsTheyWereAskedFor()
    {
        SubUserFixture test;
        tickBoth(test);
        test.sendFileGrant();
        test.wait();
        test.accounts[0]->accountPrivate = "renewed";
        test.services.user.accounts.removeAt(1);
        test.answer(0);
        test.answer(1);
        const auto grants = test.services.client.exports.last().grants;
        QCOMPARE(grants.size(), 2);
        QCOMPARE(grants[0]->account.accountPrivate, std::string("secret 0"));
        QVERIFY(mbservice::isSameAccount(grants[1]->account, *test.accounts[1]));
    }

    void aGrantPreparedAnewForgetsWhatAnEarlierResultBrought()
    {
        SubUserFixture test;
        test.makePending(0);
        test.sendFileGrant();
        test.answer(0);
        QCOMPARE(test.cell(0, 5), QStringLiteral("ref"));
        test.tick(0);
        QCOMPARE(test.cell(0, 4), QStringLiteral("已修改, 未授权"));
        QCOMPARE(test.cell(0, 5), QString());
    }

    void aFileNamesTheUserItWasAskedForWhomeverThePageShowsByThen()
    {
        SubUserFixture test;
        tickBoth(test);
        test.sendFileGrant();
        test.wait();
        test.page->setKey(QStringLiteral("somebody else"));
        test.answer(0);
        test.answer(1);
        QCOMPARE(test.services.client.exports.last().grants.first()->grantee,
                 QStringLiteral("ops"));
    }

    void aFileThatCannotBeWrittenIsToldAndTheGrantIsOver()
    {
        SubUserFixture test;
        test.makePending(0);
        test.services.client.exportResult = 1;
        test.sendFileGrant();
        test.wait();
        test.answer(0);
        const QStringList texts = tipTexts();
        QCOMPARE(texts.size(), 4);
        QCOMPARE(texts.count(QStringLiteral("生成授权文件失败")), 4);
        QCOMPARE(test.cell(0, 5), QStringLiteral("ref"));
        test.page->reloadData();
        QCOMPARE(test.cell(0, 4), QStringLiteral("未授权"));
    }

    void resultsOfAFileGrantAreNotToldOneByOne()
    {
        SubUserFixture test;
        tickBoth(test);
        test.sendFileGrant();
        test.answer(0);
        test.answer(1, false);
        QVERIFY(tipTexts().isEmpty());
    }

    void pendingAccountsOutliveAFileGrantUntilTheNextReload()
    {
        SubUserFixture test;
        test.makePending(0);
        test.sendFileGrant();
        test.wait();
        test.answer(0);
        QCOMPARE(test.cell(0, 4), QStringLiteral("已修改, 未授权"));
        QVERIFY(test.ticked(0));
        test.page->reloadData();
        QCOMPARE(test.cell(0, 4), QStringLiteral("未授权"));
    }

    void aFinishedGrantNeverBlocksLaterReloads()
    {
        SubUserFixture test;
        test.makePending(0);
        // Whatever was pending is gone by the time the password is accepted, so that the export
        // runs inside the dialog's answer.
        ModalDriver dialogs;
        dialogs.answerFile(QStringLiteral("/tmp/sub-user.taa"));
        dialogs.expect([&test](QWidget* window) {
            test.tick(0, false);
            window->findChild<QLineEdit*>(QStringLiteral("halden_input_edit"))
                ->setText(QStringLiteral("pw"));
            window->findChild<QPushButton*>(QStringLiteral("halden_input_ok"))->click();
        });
        test.page->onFileAuthTriggered(false);
        QVERIFY(test.services.client.calls.isEmpty());
        test.services.client.activeSubUsers.clear();
        test.page->reloadData();
        QCOMPARE(test.state()->text(), QStringLiteral("已禁用"));
    }

    void manyAccountsAreGrantedInLinearTimeWithTheSameOutcome()
    {
        SubUserFixture test;
        const int count = 400;
        for (int number = 0; number < count; ++number)
            test.services.user.addAccount(1, 1, "9000", "many" + std::to_string(number),
                                          mbservice::AUTH_TYPE_NOT_GRANTED);
        test.page->reloadData();
        test.setDays(QDate(2026, 3, 10), QDate(2026, 3, 12));
        for (int row = 4; row < 4 + count; ++row)
            test.tick(row);
        test.page->onServerAuthTriggered(false);
        QCOMPARE(test.services.client.addAuths.size(), count);
        test.wait();
        for (int index = 0; index < count; ++index) {
            const auto account = test.services.user.getAccountData(
                GW::genAccountKeyQs(test.services.client.addAuths.at(index).account));
            test.services.grant(account, QStringLiteral("ops"), QDate(2026, 3, 10),
                                QDate(2026, 3, 12));
            test.answer(index);
        }
        QVERIFY2(test.navigatorReloads() < 20, "repeated ends of one grant are merged");
        QCOMPARE(tipTexts().size(), 2 * count);
        QTRY_VERIFY(test.ticked(4 + count - 1));
        for (int row = 4; row < 4 + count; ++row) {
            QTRY_COMPARE(test.cell(row, 4), QStringLiteral("已授权"));
            QCOMPARE(test.cell(row, 5), QStringLiteral("ops"));
            QVERIFY(test.ticked(row));
            QVERIFY(!test.table()->isItemCheckEnabled(row, 0));
        }
    }
};

int main(int argc, char** argv)
{
    return runTest<SubUserGrantTest>(argc, argv);
}

#include "SubUserGrantTest.moc"
