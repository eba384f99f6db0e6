#include "authsetting/services/Services.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "kit/dates/DateConversions.h"
#include "tests/authsetting/BatchPageTools.h"
#include "tests/support/TipTestCase.h"

#include <QElapsedTimer>
#include <QHash>
#include <QPushButton>
#include <QThread>

#include <memory>

namespace {

int seconds(int year, int month, int day)
{
    return KZ::qDateTimeToSecond(QDateTime(QDate(year, month, day), QTime(0, 0)));
}

/// Finds an account at once, as a client with many accounts does.
class IndexedUserConfig : public FakeUserConfig
{
public:
    void addIndexed(int number)
    {
        const auto account =
            addAccount(1, 1, "b", std::to_string(number), mbservice::AUTH_TYPE_NOT_GRANTED);
        m_byKey.insert(account->key(), account);
    }

    boost::shared_ptr<GW::CAccount> getAccountData(QString key) override
    {
        return m_byKey.value(key);
    }

private:
    QHash<QString, boost::shared_ptr<GW::CAccount>> m_byKey;
};

/// Answers every grant at once.
class PromptClient : public FakeAuthClient
{
public:
    void addAuth(QString grantee, const mbservice::CAccountInfo& account, GW::CAuthLimit& limit,
                 QVariant tag, bool toServer) override
    {
        FakeAuthClient::addAuth(grantee, account, limit, tag, toServer);
        answerAdd(true);
    }
};

} // namespace

class BatchGrantTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void nothingSelectedIsToldFirst()
    {
        BatchUnderTest test;
        test.addGranted("10", QStringLiteral("amy"));
        test.add("11", 1, mbservice::AUTH_TYPE_GRANTED_TO_ME);
        test.page->reloadData();
        test.show();
        for (auto grant : {&GW::CAuthSettingAccountsAuthorizeTabPage::onServerAuthTriggered,
                           &GW::CAuthSettingAccountsAuthorizeTabPage::onFileAuthTriggered}) {
            (test.page->*grant)(false);
            QCOMPARE(tipTexts(), QStringList(QStringLiteral("至少需选择一个账号")));
            QCOMPARE(KZ::CMessageTip::visibleTips().at(0)->anchor(), test.button);
            QCOMPARE(KZ::CMessageTip::visibleTips().at(0)->kind(), 3);
            KZ::CMessageTip::closeAll();
        }
        QVERIFY(test.services.client.calls.isEmpty());
        QVERIFY(test.dialog.events.isEmpty());
    }

    void anEmptyGranteeIsToldSecond()
    {
        BatchUnderTest test;
        test.open({"10"});
        test.tick(0, true);
        for (auto grant : {&GW::CAuthSettingAccountsAuthorizeTabPage::onServerAuthTriggered,
                           &GW::CAuthSettingAccountsAuthorizeTabPage::onFileAuthTriggered}) {
            (test.page->*grant)(false);
            QCOMPARE(tipTexts(), QStringList(QStringLiteral("被授权人不能为空")));
            QCOMPARE(KZ::CMessageTip::visibleTips().at(0)->anchor(), test.grantee);
            QCOMPARE(KZ::CMessageTip::visibleTips().at(0)->kind(), 3);
            KZ::CMessageTip::closeAll();
        }
        QVERIFY(test.services.client.calls.isEmpty());
    }

    void aGrantSendsOneRequestAndOneMessagePerSelectedAccount()
    {
        BatchUnderTest test;
        const auto first = test.add("10");
        test.addGranted("11", QStringLiteral("amy"));
        const auto third = test.add("12", 2);
        third->accountAlias = "别名";
        test.open({"13"});
        test.tick(2, true);
        test.tick(0, true);
        test.grantee->setEditText(QStringLiteral(" bob "));
        test.page->onServerAuthTriggered(false);

        QCOMPARE(test.dialog.ids(), QVector<int>{GW::EVENT_SET_WAITING});
        QCOMPARE(test.dialog.events[0].param1, 2020001);
        QCOMPARE(test.dialog.events[0].param2, 1);
        const auto& requests = test.services.client.addAuths;
        QCOMPARE(requests.size(), 2);
        QCOMPARE(GW::genAccountKeyQs(requests[0].account), first->key());
        QCOMPARE(GW::genAccountKeyQs(requests[1].account), third->key());
        for (const FakeAuthClient::AddAuth& request : requests) {
            QCOMPARE(request.grantee, QStringLiteral(" bob "));
            QCOMPARE(request.limit.startTime, seconds(2026, 3, 2));
            QCOMPARE(request.limit.endTime, seconds(2026, 3, 9));
            QVERIFY(!request.limit.hasMarginRatio());
            QCOMPARE(request.tag.toInt(), int(quint32(quintptr(test.page))));
            QVERIFY(request.toServer);
        }
        const auto& messages = test.services.messages.messages;
        QCOMPARE(messages.size(), 2);
        QCOMPARE(messages[0].text, QStringLiteral("账户10授权, 撤销所有执行任务"));
        QCOMPARE(messages[0].accountKey, first->key());
        QCOMPARE(int(messages[0].type), 0);
        QCOMPARE(int(messages[0].level), 1);
        QCOMPARE(messages[1].text, QStringLiteral("账户别名授权, 撤销所有执行任务"));
        QVERIFY(tipTexts().isEmpty());
    }

    void anAccountThatTheConfigurationLostGetsNoMessage()
    {
        BatchUnderTest test;
        test.add("10");
        const auto kept = test.add("11");
        test.page->reloadData();
        test.show();
        test.tickAllAndName(QStringLiteral("bob"));
        test.services.user.accounts.removeFirst();
        test.page->onServerAuthTriggered(false);
        QCOMPARE(test.services.client.addAuths.size(), 2);
        QCOMPARE(test.services.messages.messages.size(), 1);
        QCOMPARE(test.services.messages.messages[0].accountKey, kept->key());
    }

    void aClientMayAnswerBeforeItReturns()
    {
        BatchUnderTest test;
        StandingClock clock;
        PromptClient client;
        GW::installServices(&client, &test.services.user, &test.services.config,
                            &test.services.messages, &test.services.time);
        delete test.page;
        test.create();
        test.open({"10", "11"});
        test.grantAllTo(QStringLiteral("bob"));
        QCOMPARE(client.addAuths.size(), 2);
        QCOMPARE(test.dialog.events.size(), 1);
        QTRY_COMPARE(tipTexts(), QStringList(QStringLiteral("授权成功")));
        QCOMPARE(test.dialog.ids(), QVector<int>({GW::EVENT_SET_WAITING, GW::EVENT_SET_WAITING,
                                                  GW::EVENT_RELOAD_NAVIGATOR}));
        delete test.page;
    }

    void anInvertedRangeIsNotCheckedAtGrantTime()
    {
        BatchUnderTest test;
        test.open({"10"});
        test.tickAllAndName(QStringLiteral("bob"));
        test.end->setDate(QDate(2026, 2, 1));
        test.page->onServerAuthTriggered(false);
        QCOMPARE(test.services.client.addAuths.size(), 1);
        QCOMPARE(test.services.client.addAuths[0].limit.endTime, seconds(2026, 2, 1));
    }

    void theLastAnswerEndsTheRequestAndTellsTheSuccess()
    {
        BatchUnderTest test;
        StandingClock clock;
        test.open({"10", "11"});
        test.grantAllTo(QStringLiteral("bob"));
        test.services.user.accounts.removeLast();
        clock.now += 1;
        test.services.client.answerAdd(true, QString(), QStringLiteral("ref1"));
        QCOMPARE(test.dialog.events.size(), 1);
        QVERIFY(tipTexts().isEmpty());
        test.services.client.answerAdd(true, QString(), QStringLiteral("ref2"));
        QCOMPARE(test.dialog.ids(), QVector<int>({GW::EVENT_SET_WAITING, GW::EVENT_SET_WAITING,
                                                  GW::EVENT_RELOAD_NAVIGATOR}));
        QCOMPARE(test.dialog.events[1].param2, 0);
        QCOMPARE(test.dialog.events[2].param1, 0);
        QCOMPARE(test.dialog.events[2].param2, 0);
        QCOMPARE(test.table->rowCount(), 1);
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("授权成功")));
        QCOMPARE(KZ::CMessageTip::visibleTips().at(0)->anchor(), test.button);
        QCOMPARE(KZ::CMessageTip::visibleTips().at(0)->kind(), 3);
        QVERIFY(test.services.client.exports.isEmpty());
    }

    void aSuccessIsToldThoughSomeAccountsFailed()
    {
        BatchUnderTest test;
        StandingClock clock;
        test.open({"10", "11"});
        test.grantAllTo(QStringLiteral("bob"));
        clock.now += 1;
        test.services.client.answerAdd(true);
        test.services.client.answerAdd(false, QStringLiteral("账号已授权"));
        QStringList texts = tipTexts();
        QCOMPARE(texts, QStringList({QStringLiteral("权限出错！错误信息：账号已授权"),
                                     QStringLiteral("授权成功")}));
    }

    void whenAllFailEachIsToldAndNothingElseHappens()
    {
        BatchUnderTest test;
        StandingClock clock;
        test.open({"10", "11"});
        test.grantAllTo(QStringLiteral("bob"));
        test.services.user.accounts.clear();
        clock.now += 1;
        test.services.client.answerAdd(false, QStringLiteral("一"));
        test.services.client.answerAdd(false, QStringLiteral("二"));
        QCOMPARE(tipTexts(), QStringList({QStringLiteral("权限出错！错误信息：一"),
                                          QStringLiteral("权限出错！错误信息：二")}));
        QCOMPARE(test.dialog.ids(), QVector<int>({GW::EVENT_SET_WAITING, GW::EVENT_SET_WAITING}));
        QCOMPARE(test.dialog.events[1].param2, 0);
        QCOMPARE(test.table->rowCount(), 2);
    }

    void aFailureIsToldAtOnceTheEndOnlyAfterTheBusyBar()
    {
        BatchUnderTest test;
        StandingClock clock;
        test.open({"10", "11"});
        test.grantAllTo(QStringLiteral("bob"));
        clock.now += 0.6;
        test.services.client.answerAdd(false, QStringLiteral("一"));
        QCOMPARE(tipTexts().size(), 1);
        test.services.client.answerAdd(true);
        QCOMPARE(tipTexts().size(), 1);
        QCOMPARE(test.dialog.events.size(), 1);
        QTRY_COMPARE(tipTexts().size(), 2);
        QCOMPARE(test.dialog.ids(), QVector<int>({GW::EVENT_SET_WAITING, GW::EVENT_SET_WAITING,
                                                  GW::EVENT_RELOAD_NAVIGATOR}));
    }

    void theNextGrantForgetsTheLastOnesResults()
    {
        BatchUnderTest test;
        StandingClock clock;
        test.open({"10"});
        test.grantAllTo(QStringLiteral("bob"));
        clock.now += 1;
        test.services.client.answerAdd(true);
        KZ::CMessageTip::closeAll();
        test.grantAllTo(QStringLiteral("bob"));
        clock.now += 1;
        test.services.client.answerAdd(false, QStringLiteral("x"));
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("权限出错！错误信息：x")));
    }

    void resultsFromAnotherThreadArriveInTheGuiThread()
    {
        BatchUnderTest test;
        test.open({"10", "11"});
        test.grantAllTo(QStringLiteral("bob"));
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            test.services.client.answerAdd(true);
            test.services.client.answerAdd(true);
        }));
        thread->start();
        QVERIFY(thread->wait());
        QCOMPARE(test.dialog.events.size(), 1);
        QTRY_COMPARE(tipTexts(), QStringList(QStringLiteral("授权成功")));
    }

    void resultsOfOtherPagesChangeNothing()
    {
        BatchUnderTest test;
        const auto account = test.add("10");
        test.page->reloadData();
        test.show();
        test.grantAllTo(QStringLiteral("bob"));
        test.services.user.accounts.clear();
        const QVariant tag(int(quint32(quintptr(test.page))) + 8);
        Q_EMIT test.services.client.sigAddAuthResult(QStringLiteral("bob"), *account, {}, QString(),
                                                     tag, true, QString(), true);
        Q_EMIT test.services.client.sigAddAuthResult(QStringLiteral("bob"), *account, {}, QString(),
                                                     tag, false, QStringLiteral("x"), true);
        Q_EMIT test.services.client.sigDelAuthResult(QStringLiteral("bob"), *account, tag, false,
                                                     QStringLiteral("x"));
        QCOMPARE(test.dialog.events.size(), 1);
        QVERIFY(tipTexts().isEmpty());
        QCOMPARE(test.table->rowCount(), 1);
    }

    void cancellingARowAsksTheServer()
    {
        BatchUnderTest test;
        StandingClock clock;
        test.add("10");
        const auto account = test.addGranted("11", QStringLiteral("amy"));
        test.page->reloadData();
        test.show();
        test.table->itemWidget(1, 8)->findChild<QPushButton*>()->click();
        QCOMPARE(test.dialog.ids(), QVector<int>{GW::EVENT_SET_WAITING});
        QCOMPARE(test.services.client.delAuths.size(), 1);
        const FakeAuthClient::DelAuth& request = test.services.client.delAuths[0];
        QCOMPARE(request.grantee, QStringLiteral("amy"));
        QCOMPARE(GW::genAccountKeyQs(request.account), account->key());
        QCOMPARE(request.account.accountPrivate, std::string("secret of 11"));
        QCOMPARE(request.tag.toInt(), int(quint32(quintptr(test.page))));
        account->authType = mbservice::AUTH_TYPE_NOT_GRANTED;
        test.services.client.grants.clear();
        clock.now += 1;
        test.services.client.answerDel(true);
        QCOMPARE(test.table->itemText(1, 4), QStringLiteral("未授权"));
        QCOMPARE(test.dialog.ids(), QVector<int>({GW::EVENT_SET_WAITING, GW::EVENT_SET_WAITING,
                                                  GW::EVENT_RELOAD_NAVIGATOR}));
        QVERIFY(tipTexts().isEmpty());
    }

    void theGranteeIsReadBackFromTheTable()
    {
        BatchUnderTest test;
        test.addGranted("10", QStringLiteral("amy"));
        test.page->reloadData();
        test.table->setItemText(0, 5, QStringLiteral("shown"));
        QVERIFY(test.page->handleEvent(GW::EVENT_CANCEL_AUTH, 0, 0, QString(), nullptr));
        QCOMPARE(test.services.client.delAuths[0].grantee, QStringLiteral("shown"));
    }

    void aFailedCancelIsToldAtItsRow()
    {
        BatchUnderTest test;
        StandingClock clock;
        test.addGranted("10", QStringLiteral("zoe"));
        test.addGranted("11", QStringLiteral("amy"));
        test.page->reloadData();
        test.show();
        test.table->itemWidget(1, 8)->findChild<QPushButton*>()->click();
        test.services.user.accounts.clear();
        clock.now += 1;
        test.services.client.answerDel(false, QStringLiteral("x"));
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("取消授权失败。错误信息：x")));
        QCOMPARE(KZ::CMessageTip::visibleTips().at(0)->kind(), 2);
        QCOMPARE(KZ::CMessageTip::visibleTips().at(0)->anchor(), test.table->itemWidget(1, 8));
        QCOMPARE(test.table->rowCount(), 2);
        QVERIFY(test.dialog.of(GW::EVENT_RELOAD_NAVIGATOR).isEmpty());
    }

    void cancellingARowThatDoesNotExistIsHandledAndDoesNothing()
    {
        BatchUnderTest test;
        test.add("10");
        test.page->reloadData();
        for (const int row : {-1, 1, 99})
            QVERIFY(test.page->handleEvent(GW::EVENT_CANCEL_AUTH, row, 0, QString(), nullptr));
        QVERIFY(test.services.client.calls.isEmpty());
        QVERIFY(test.dialog.events.isEmpty());
    }

    void aResultAfterThePageWasHiddenIsNotLost()
    {
        BatchUnderTest test;
        StandingClock clock;
        test.open({"10"});
        test.grantAllTo(QStringLiteral("bob"));
        test.page->hide();
        clock.now += 1;
        test.services.client.answerAdd(true);
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("授权成功")));
    }

    void aResultAfterThePageDiedIsHarmless()
    {
        BatchUnderTest test;
        StandingClock clock;
        test.open({"10", "11"});
        test.grantAllTo(QStringLiteral("bob"));
        clock.now += 0.69;
        test.services.client.answerAdd(true);
        delete test.page;
        test.services.client.answerAdd(true);
        QTest::qWait(40);
        QVERIFY(tipTexts().isEmpty());
    }

    void tenThousandAccountsCostNoWidgetsAndNoPatience()
    {
        IndexedUserConfig user;
        BatchUnderTest test;
        for (int index = 0; index < 10000; ++index)
            user.addIndexed(index);
        GW::installServices(&test.services.client, &user, &test.services.config,
                            &test.services.messages, &test.services.time);
        QElapsedTimer timer;
        timer.start();
        test.page->reloadData();
        test.show();
        for (int row = 0; row < 10000; ++row)
            test.table->setItemChecked(row, 0, true);
        test.grantee->setEditText(QStringLiteral("bob"));
        test.page->handleEvent(68, 0, 0, QString(), nullptr);
        test.page->onServerAuthTriggered(false);
        QCOMPARE(test.services.client.addAuths.size(), 10000);
        for (int index = 0; index < 9999; ++index)
            test.services.client.answerAdd(true);
        QVERIFY2(timer.elapsed() < 60000, qPrintable(QString::number(timer.elapsed())));
        QVERIFY(test.page->findChildren<KZ::CCheckBox*>().size() < 100);
        QCOMPARE(test.table->itemText(9999, 4), QStringLiteral("已修改 未授权"));
    }

    void aReloadInTheMiddleOfAGrantLosesNoAnswer()
    {
        BatchUnderTest test;
        StandingClock clock;
        test.open({"10", "11"});
        test.grantAllTo(QStringLiteral("bob"));
        clock.now += 1;
        test.services.client.answerAdd(true);
        test.page->reloadData();
        QCOMPARE(test.dialog.events.size(), 1);
        test.services.client.answerAdd(false, QStringLiteral("x"));
        QCOMPARE(test.dialog.ids(), QVector<int>({GW::EVENT_SET_WAITING, GW::EVENT_SET_WAITING,
                                                  GW::EVENT_RELOAD_NAVIGATOR}));
        QCOMPARE(tipTexts(), QStringList({QStringLiteral("权限出错！错误信息：x"),
                                          QStringLiteral("授权成功")}));
    }

    void anAnswerThatNeverCameDoesNotHoldUpTheNextGrant()
    {
        BatchUnderTest test;
        StandingClock clock;
        test.open({"10", "11"});
        test.grantAllTo(QStringLiteral("bob"));
        test.tick(1, false);
        test.page->onServerAuthTriggered(false);
        QCOMPARE(test.services.client.addAuths.size(), 3);
        clock.now += 1;
        const FakeAuthClient::AddAuth request = test.services.client.addAuths[2];
        Q_EMIT test.services.client.sigAddAuthResult(request.grantee, request.account,
                                                     request.limit, QString(), request.tag, true,
                                                     QString(), true);
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("授权成功")));
    }
};

int main(int argc, char** argv)
{
    return runTest<BatchGrantTest>(argc, argv);
}

#include "BatchGrantTest.moc"
