#include "authsetting/overview/AuthSettingAccountsOverviewTabPage.h"

#include "authsetting/authorize/AuthSettingAccountOpWidget.h"
#include "authsetting/services/AccountKey.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/shell/RequestTag.h"
#include "kit/table/OddEvenRowTable.h"
#include "tests/authsetting/TabPageTools.h"
#include "tests/support/TipTestCase.h"

#include <QPushButton>
#include <QTableView>
#include <QThread>

namespace {

constexpr int operationColumn = 7;

struct OverviewUnderTest
{
    OverviewUnderTest()
    {
        services.config.addPlatform(1, QStringLiteral("期货一"));
        services.config.addPlatform(5, QStringLiteral("期货五"));
        services.config.addStkPlatform(1, QStringLiteral("股票一"));
        services.user.brokers.insert({1, QStringLiteral("b")}, QStringLiteral("期货公司"));
        services.user.stkBrokers.insert({1, QStringLiteral("b")}, QStringLiteral("证券公司"));
        page = new GW::CAuthSettingAccountsOverviewTabPage(&dialog);
        table = page->findChild<KZ::COddEvenRowTable*>();
    }

    boost::shared_ptr<GW::CAccount>
    add(const char* id, int type = 1, mbservice::EAuthType state = mbservice::AUTH_TYPE_NOT_GRANTED)
    {
        return services.user.addAccount(type, 1, "b", id, state);
    }

    boost::shared_ptr<GW::CAccount> addGranted(const char* id, const QString& grantee)
    {
        auto account = add(id);
        services.grant(account, grantee, QDate(2026, 3, 4), QDate(2026, 3, 9));
        return account;
    }

    QStringList row(int row) const
    {
        QStringList texts;
        for (int column = 0; column < table->columnCount(); ++column)
            texts.append(table->itemText(row, column));
        return texts;
    }

    QPushButton* buttonOf(int row) const
    {
        return table->itemWidget(row, operationColumn)->findChild<QPushButton*>();
    }

    FakeServices services;
    EventRecorder dialog;
    GW::CAuthSettingAccountsOverviewTabPage* page = nullptr;
    KZ::COddEvenRowTable* table = nullptr;
};

} // namespace

class AuthSettingAccountsOverviewTabPageTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theTableIsBuiltOnceWithEightColumns()
    {
        OverviewUnderTest test;
        QCOMPARE(test.table->getID(), 0x400011);
        QCOMPARE(test.table->getID(), 4194321);
        QStringList headers;
        for (int column = 0; column < test.table->columnCount(); ++column)
            headers.append(test.table->headerText(column));
        QCOMPARE(headers.join(u'|'), QStringLiteral("交易平台|经纪公司/券商|账号|授权状态|被授权人|"
                                                    "起始时间|终止时间|操作"));
        test.dialog.show();
        test.page->resize(600, 400);
        QCOMPARE(test.table->geometry(), QRect(8, 8, 584, 384));
        QCOMPARE(test.table->rowCount(), 0);
    }

    void onlyOwnGrantableAccountsAreListedInOrder()
    {
        OverviewUnderTest test;
        test.add("10");
        test.add("11", 1, mbservice::AUTH_TYPE_GRANTED_TO_ME);
        test.add("12", 1, mbservice::AUTH_TYPE_UNKNOWN);
        test.add("13", 1, mbservice::EAuthType(4));
        test.services.user.accounts.append(nullptr);
        test.addGranted("05", QStringLiteral("bob"));
        test.services.user.subAccounts.insert(test.add("14")->key());
        test.services.user.parentAccounts.insert(test.addGranted("15", QStringLiteral("x"))->key());
        test.page->reloadData();
        QCOMPARE(test.table->rowCount(), 2);
        QCOMPARE(test.table->itemText(0, 2), QStringLiteral("10"));
        QCOMPARE(test.table->itemText(1, 2), QStringLiteral("05"));
    }

    void aRowShowsTheAccountAndItsGrant()
    {
        OverviewUnderTest test;
        test.add("10");
        test.addGranted("11", QStringLiteral("bob"))->accountAlias = "我的账号";
        test.page->reloadData();
        QCOMPARE(test.row(0).join(u'|'), QStringLiteral("期货一|期货公司|10|未授权||||"));
        QCOMPARE(test.row(1).join(u'|'),
                 QStringLiteral("期货一|期货公司|我的账号|已授权|bob|2026-03-04|2026-03-09|"));
        QCOMPARE(test.table->itemTextColorKey(0, 3), QStringLiteral("clr_auth_type_not_granted"));
        QCOMPARE(test.table->itemTextColorKey(1, 3),
                 QStringLiteral("clr_auth_type_granted_to_other"));
    }

    void aGrantNearItsEndIsMarkedBesideItsState()
    {
        OverviewUnderTest test;
        for (const int days : {0, 4}) {
            test.services.grant(test.add(std::to_string(days).c_str()), QStringLiteral("bob"),
                                testToday(), testToday().addDays(days));
        }
        test.page->reloadData();
        QCOMPARE(expiryMark(test.table, 0, 3), QStringLiteral("今天到期"));
        QCOMPARE(expiryMark(test.table, 1, 3), QString());
        QCOMPARE(test.table->itemText(0, 3), QStringLiteral("已授权"));
        test.services.time.now = test.services.time.now.addDays(1);
        test.page->reloadData();
        QCOMPARE(expiryMark(test.table, 1, 3), QStringLiteral("还有 3 天到期"));
    }

    void onlyTypeTwoIsStock()
    {
        OverviewUnderTest test;
        test.add("1", 1);
        test.add("2", 2);
        test.add("3", 7);
        test.page->reloadData();
        QCOMPARE(test.table->itemText(0, 0), QStringLiteral("期货一"));
        QCOMPARE(test.table->itemText(1, 0), QStringLiteral("股票一"));
        QCOMPARE(test.table->itemText(1, 1), QStringLiteral("证券公司"));
        QCOMPARE(test.table->itemText(2, 0), QStringLiteral("期货一"));
        QCOMPARE(test.table->itemText(2, 1), QStringLiteral("期货公司"));
    }

    void anUnknownPlatformShowsNoName()
    {
        OverviewUnderTest test;
        test.add("1", 1)->platformId = 9;
        test.add("2", 2)->platformId = 9;
        // A stock platform that only the futures table knows.
        test.add("3", 2)->platformId = 5;
        test.page->reloadData();
        QCOMPARE(test.table->rowCount(), 3);
        for (int row = 0; row < 3; ++row)
            QCOMPARE(test.table->itemText(row, 0), QString());
    }

    void onlyGrantedRowsShowTheCancelButton()
    {
        OverviewUnderTest test;
        test.add("10");
        test.addGranted("11", QStringLiteral("bob"));
        test.page->reloadData();
        QVERIFY(test.buttonOf(0)->isHidden());
        QVERIFY(!test.buttonOf(1)->isHidden());
        QVERIFY(qobject_cast<GW::CAuthSettingAccountOpWidget*>(
            test.table->itemWidget(1, operationColumn)));
    }

    void cancellingAsksTheServerForTheRowsGrant()
    {
        OverviewUnderTest test;
        test.add("10");
        const auto account = test.addGranted("11", QStringLiteral("bob"));
        test.page->reloadData();
        test.buttonOf(1)->click();
        QCOMPARE(test.dialog.ids(), QVector<int>{GW::EVENT_SET_WAITING});
        QCOMPARE(test.dialog.events[0].param1, 2010001);
        QCOMPARE(test.dialog.events[0].param2, 1);
        QCOMPARE(test.services.client.delAuths.size(), 1);
        const FakeAuthClient::DelAuth& request = test.services.client.delAuths[0];
        QCOMPARE(request.grantee, QStringLiteral("bob"));
        QCOMPARE(GW::genAccountKeyQs(request.account), account->key());
        QCOMPARE(request.tag.toInt(), int(quint32(quintptr(test.page))));
    }

    void theGranteeIsReadBackFromTheTable()
    {
        OverviewUnderTest test;
        test.addGranted("11", QStringLiteral("bob"));
        test.page->reloadData();
        test.table->setItemText(0, 4, QStringLiteral("shown"));
        QVERIFY(test.page->handleEvent(GW::EVENT_CANCEL_AUTH, 0, 0, QString(), nullptr));
        QCOMPARE(test.services.client.delAuths[0].grantee, QStringLiteral("shown"));
    }

    void theAccountIsTheOneOfTheGrantNotOfTheList()
    {
        OverviewUnderTest test;
        const auto account = test.addGranted("11", QStringLiteral("bob"));
        test.services.client.grants[account->key()]->account.accountAlias = "from the grant";
        test.page->reloadData();
        test.page->handleEvent(GW::EVENT_CANCEL_AUTH, 0, 0, QString(), nullptr);
        QCOMPARE(test.services.client.delAuths[0].account.accountAlias,
                 std::string("from the grant"));
    }

    void aCancellationGoesByWhatTheRowShowsWhateverTheClientHasLearnedSince()
    {
        OverviewUnderTest test;
        const auto account = test.addGranted("11", QStringLiteral("bob"));
        const auto grant = test.services.client.grants[account->key()];
        grant->account.accountAlias = "as filled";
        test.page->reloadData();
        grant->account.accountAlias = "changed later";
        grant->account.accountId = "12";
        grant->grantee = QStringLiteral("carol");
        test.services.client.grants.clear();
        test.page->handleEvent(GW::EVENT_CANCEL_AUTH, 0, 0, QString(), nullptr);
        QCOMPARE(test.services.client.delAuths.size(), 1);
        QCOMPARE(test.services.client.delAuths[0].account.accountAlias, std::string("as filled"));
        QCOMPARE(test.services.client.delAuths[0].account.accountId, std::string("11"));
        QCOMPARE(test.services.client.delAuths[0].grantee, QStringLiteral("bob"));
    }

    void cancellingARowWithoutAGrantIsHandledAndDoesNothing()
    {
        OverviewUnderTest test;
        test.add("10", 1, mbservice::AUTH_TYPE_GRANTED_TO_OTHER);
        test.page->reloadData();
        QVERIFY(!test.buttonOf(0)->isHidden());
        for (const int row : {0, 1, -1})
            QVERIFY(test.page->handleEvent(GW::EVENT_CANCEL_AUTH, row, 0, QString(), nullptr));
        QVERIFY(test.services.client.delAuths.isEmpty());
        QVERIFY(test.dialog.events.isEmpty());
    }

    void rowsKeepTheirIdentifiersWhileTheUserSorts()
    {
        OverviewUnderTest test;
        test.addGranted("10", QStringLiteral("zoe"));
        test.addGranted("11", QStringLiteral("amy"));
        test.page->reloadData();
        test.page->resize(800, 400);
        test.dialog.resize(800, 400);
        test.dialog.show();
        test.table->view()->sortByColumn(4, Qt::AscendingOrder);
        test.buttonOf(0)->click();
        QCOMPARE(test.services.client.delAuths[0].grantee, QStringLiteral("zoe"));
    }

    void aSuccessReloadsAndThenReloadsTheTree()
    {
        OverviewUnderTest test;
        StandingClock clock;
        const auto account = test.addGranted("11", QStringLiteral("bob"));
        test.page->reloadData();
        test.buttonOf(0)->click();
        account->authType = mbservice::AUTH_TYPE_NOT_GRANTED;
        test.services.client.grants.clear();
        clock.now += 1;
        test.services.client.answerDel(true);
        QCOMPARE(test.table->itemText(0, 3), QStringLiteral("未授权"));
        QCOMPARE(test.table->itemText(0, 4), QString());
        QCOMPARE(test.dialog.ids(), QVector<int>({GW::EVENT_SET_WAITING, GW::EVENT_SET_WAITING,
                                                  GW::EVENT_RELOAD_NAVIGATOR}));
        QCOMPARE(test.dialog.events[1].param2, 0);
        QCOMPARE(test.dialog.events[2].param1, 0);
        QCOMPARE(test.dialog.events[2].param2, 0);
        QCOMPARE(test.dialog.events[2].text, QString());
        QCOMPARE(test.dialog.events[2].data, nullptr);
        QVERIFY(tipTexts().isEmpty());
        // The row has no grant any more.
        test.page->handleEvent(GW::EVENT_CANCEL_AUTH, 0, 0, QString(), nullptr);
        QCOMPARE(test.services.client.delAuths.size(), 1);
    }

    void aFailureTellsTheReasonAtTheRowsButtonAndKeepsTheRows()
    {
        OverviewUnderTest test;
        StandingClock clock;
        test.addGranted("10", QStringLiteral("amy"));
        test.addGranted("11", QStringLiteral("bob"));
        test.page->reloadData();
        test.page->resize(800, 400);
        test.dialog.resize(800, 400);
        test.dialog.show();
        test.buttonOf(1)->click();
        test.services.user.accounts.clear();
        clock.now += 1;
        test.services.client.answerDel(false, QStringLiteral("没有权限"));
        QCOMPARE(test.table->rowCount(), 2);
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("取消授权失败。错误信息：没有权限")));
        const KZ::CMessageTip* tip = KZ::CMessageTip::visibleTips().at(0);
        QCOMPARE(tip->kind(), 2);
        QCOMPARE(tip->anchor(), test.table->itemWidget(1, operationColumn));
        QVERIFY(test.dialog.of(GW::EVENT_RELOAD_NAVIGATOR).isEmpty());
    }

    void aFailureOfARowThatIsGoneIsStillTold()
    {
        OverviewUnderTest test;
        StandingClock clock;
        test.addGranted("10", QStringLiteral("amy"));
        test.page->reloadData();
        test.dialog.show();
        test.buttonOf(0)->click();
        test.services.user.accounts.clear();
        test.page->reloadData();
        clock.now += 1;
        test.services.client.answerDel(false, QStringLiteral("没有权限"));
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("取消授权失败。错误信息：没有权限")));
    }

    void theResultWaitsForTheBusyBar()
    {
        OverviewUnderTest test;
        StandingClock clock;
        test.addGranted("10", QStringLiteral("amy"));
        test.page->reloadData();
        test.dialog.show();
        test.buttonOf(0)->click();
        clock.now += 0.65;
        test.services.client.answerDel(false, QStringLiteral("x"));
        QVERIFY(tipTexts().isEmpty());
        QTRY_COMPARE(tipTexts().size(), 1);
    }

    void resultsOfOtherPagesChangeNothing()
    {
        OverviewUnderTest test;
        const auto account = test.addGranted("11", QStringLiteral("bob"));
        test.page->reloadData();
        test.services.user.accounts.clear();
        for (const QVariant& tag : {QVariant(int(quint32(quintptr(test.page))) + 4), QVariant()}) {
            Q_EMIT test.services.client.sigDelAuthResult(QStringLiteral("bob"), *account, tag, true,
                                                         QString());
            Q_EMIT test.services.client.sigDelAuthResult(QStringLiteral("bob"), *account, tag,
                                                         false, QStringLiteral("x"));
        }
        QCOMPARE(test.table->rowCount(), 1);
        QVERIFY(test.dialog.events.isEmpty());
        QVERIFY(tipTexts().isEmpty());
    }

    void aResultFromAnotherThreadArrivesInTheGuiThread()
    {
        OverviewUnderTest test;
        const auto account = test.addGranted("11", QStringLiteral("bob"));
        test.page->reloadData();
        const QVariant tag = GW::requestTag(test.page);
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            Q_EMIT test.services.client.sigDelAuthResult(QStringLiteral("bob"), *account, tag, true,
                                                         QString());
        }));
        thread->start();
        QVERIFY(thread->wait());
        QVERIFY(test.dialog.events.isEmpty());
        QTRY_COMPARE(test.dialog.of(GW::EVENT_RELOAD_NAVIGATOR).size(), 1);
    }

    void aResultAfterThePageDiedIsHarmless()
    {
        OverviewUnderTest test;
        StandingClock clock;
        test.addGranted("11", QStringLiteral("bob"));
        test.page->reloadData();
        test.buttonOf(0)->click();
        clock.now += 0.69;
        test.services.client.answerDel(false, QStringLiteral("x"));
        delete test.page;
        QTest::qWait(40);
        Q_EMIT test.services.client.sigDelAuthResult(QString(), {}, QVariant(0), true, QString());
        QVERIFY(tipTexts().isEmpty());
    }

    void theLayoutSurvivesThePage()
    {
        OverviewUnderTest test;
        test.table->setColumnWidth(2, 137);
        const QString layout = test.table->saveConfigStr();
        delete test.page;
        QCOMPARE(test.services.user.tableLayouts.value(4194321), layout);
        test.page = new GW::CAuthSettingAccountsOverviewTabPage(&test.dialog);
        test.table = test.page->findChild<KZ::COddEvenRowTable*>();
        QCOMPARE(test.table->columnWidth(2), 137);
    }

    void otherEventsPass()
    {
        OverviewUnderTest test;
        test.dialog.answer = false;
        QVERIFY(!test.page->handleEvent(5, 0, 0, QString(), nullptr));
        QVERIFY(!test.page->handleEvent(59, 0, 1, QString(), nullptr));
        QCOMPARE(test.dialog.ids(), QVector<int>({5, 59}));
    }
};

int main(int argc, char** argv)
{
    return runTest<AuthSettingAccountsOverviewTabPageTest>(argc, argv);
}

#include "AuthSettingAccountsOverviewTabPageTest.moc"
