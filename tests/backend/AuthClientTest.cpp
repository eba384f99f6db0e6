#include "backend/client/AuthClient.h"

#include "backend/config/UserConfig.h"
#include "backend/store/PasswordHash.h"
#include "tests/backend/ClientSpy.h"
#include "tests/backend/StoreFixture.h"
#include "tests/support/TestCase.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QSignalSpy>

using namespace backend;

namespace {

void grant(GW::CAuthClient* client, const StoreFixture& fixture, int account,
           const QString& grantee, bool toServer = true, const QVariant& tag = {})
{
    GW::CAuthLimit limit = fixture.days(0, 7);
    client->addAuth(grantee, StoreFixture::account(account), limit, tag, toServer);
}

QString line(int account, const QString& grantee, const QString& result = QStringLiteral("ok"))
{
    return QStringLiteral("add %1 %2 %3").arg(880000 + account).arg(grantee, result);
}

int authType(Session& session, int account)
{
    const auto record = session.userConfig()->getAccountData(StoreFixture::key(account));
    return record ? record->authType : -1;
}

} // namespace

class AuthClientTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theAccountsAreThereFromTheStart()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        GrantRecord received;
        received.grantor = name::bob;
        received.grantee = name::alice;
        received.account = StoreFixture::account(20);
        received.limit = fixture.days(-1, 3);
        QVERIFY(fixture.addGrant(received));
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);

        QStringList shown;
        for (const auto& account : session->userConfig()->accounts) {
            shown.append(QString::fromStdString(account->accountId) + QLatin1Char(':') +
                         QString::number(account->authType));
        }
        QCOMPARE(shown.join(QLatin1Char(' ')),
                 QStringLiteral("880001:1 880002:1 880003:1 880004:1 880005:1 880006:1 880007:1 "
                                "880020:2"));
        QVERIFY(session->userConfig()->hasSubAccount(StoreFixture::key(6)));
        QVERIFY(session->userConfig()->isSubAccount(StoreFixture::key(7)));
        QVERIFY(!session->userConfig()->isSubAccount(StoreFixture::key(6)));
        QVERIFY(!session->userConfig()->isSubAccount(StoreFixture::key(1)));

        boost::shared_ptr<GW::CAuthDetail> detail;
        QVERIFY(session->authClient()->getAuthDetail(StoreFixture::key(20), detail));
        QCOMPARE(detail->grantor, name::bob);
        QCOMPARE(detail->grantee, name::alice);
        QCOMPARE(detail->limit.startTime, received.limit.startTime);
        QCOMPARE(detail->limit.endTime, received.limit.endTime);
        QVERIFY(!detail->limit.hasMarginRatio());
        QVERIFY(!session->authClient()->getAuthDetail(StoreFixture::key(1), detail));
        // What others granted to him is not what he granted.
        QMap<QString, boost::shared_ptr<GW::CAuthDetail>> grants;
        QVERIFY(session->authClient()->getAuthorizedFromMeInfo(name::alice, grants));
        QVERIFY(grants.isEmpty());

        QVector<QString> subUsers;
        QVERIFY(session->authClient()->getSubUserList(subUsers));
        QCOMPARE(subUsers, QVector<QString>({name::dora, name::erin}));
        QVERIFY(session->authClient()->isSubUserActive(name::dora));
        QVERIFY(!session->authClient()->isSubUserActive(name::erin));
        QVERIFY(!session->authClient()->isSubUserActive(name::bob));
    }

    void aGrantReturnsAtOnceAndIsAnsweredOnce()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        ClientSpy spy(session->authClient());
        GW::CAuthLimit limit = fixture.daysWithRatio(0, 7, 0.25);
        session->authClient()->addAuth(name::bob, StoreFixture::account(2), limit, 4711, true);
        QVERIFY(spy.lines.isEmpty());
        QCOMPARE(authType(*session, 2), 1);
        QCOMPARE(spy.wait(2), QStringList({line(2, name::bob), QStringLiteral("changed")}));
        QCOMPARE(spy.tags, QVariantList{4711});
        QCOMPARE(spy.toServers, QVector<bool>{true});
        QCOMPARE(spy.limits[0].startTime, limit.startTime);
        QCOMPARE(spy.limits[0].endTime, limit.endTime);
        QCOMPARE(spy.limits[0].availableMarginRatio, 0.25);
        QCOMPARE(spy.references[0].size(), 32);

        boost::shared_ptr<GW::CAuthDetail> detail;
        QVERIFY(session->authClient()->getAuthDetail(StoreFixture::key(2), detail));
        QCOMPARE(detail->grantRef, spy.references[0]);
        QCOMPARE(detail->grantor, name::alice);
        QCOMPARE(detail->grantee, name::bob);
        QCOMPARE(detail->account.accountAlias, std::string("备用账户"));
        QCOMPARE(detail->limit.availableMarginRatio, 0.25);
        QMap<QString, boost::shared_ptr<GW::CAuthDetail>> grants;
        QVERIFY(session->authClient()->getAuthorizedFromMeInfo(name::bob, grants));
        QCOMPARE(grants.keys(), QStringList(StoreFixture::key(2)));

        // Nothing more comes.
        QTest::qWait(300);
        QCOMPARE(spy.lines.size(), 2);
    }

    void everythingIsFoundAgainByTheNextSession()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        {
            const auto session = fixture.signIn(name::alice);
            QVERIFY(session);
            ClientSpy spy(session->authClient());
            grant(session->authClient(), fixture, 1, name::bob);
            grant(session->authClient(), fixture, 2, name::dora);
            session->authClient()->delAuth(name::bob, StoreFixture::account(1), 1);
            spy.wait(4);
        }
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        QCOMPARE(authType(*session, 1), 1);
        QCOMPARE(authType(*session, 2), 3);
    }

    void oneBurstIsOneTransaction()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        QVERIFY(fixture.addAccounts(1000, 200));
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        ClientSpy spy(session->authClient());
        const qint64 before = fixture.commits();
        QStringList expected;
        for (int i = 0; i < 200; ++i) {
            grant(session->authClient(), fixture, 1000 + i, name::bob);
            expected.append(line(1000 + i, name::bob));
        }
        expected.append(QStringLiteral("changed"));
        QCOMPARE(spy.wait(201), expected);
        QCOMPARE(fixture.commits(), before + 1);
    }

    void resultsComeAfterTheCommitAndAfterMemoryWasSwapped()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        ClientSpy spy(session->authClient());
        QStringList seen;
        QVector<int> types;
        spy.onLine = [&] {
            if (!seen.isEmpty())
                return;
            // At the first result the whole burst is in the store and in memory.
            seen = fixture.grantsOf(1) + fixture.grantsOf(3);
            types = {authType(*session, 1), authType(*session, 3)};
        };
        grant(session->authClient(), fixture, 1, name::bob);
        grant(session->authClient(), fixture, 3, name::dora);
        spy.wait(3);
        QCOMPARE(seen, QStringList({QStringLiteral("bob current server"),
                                    QStringLiteral("dora current server")}));
        QCOMPARE(types, QVector<int>({3, 3}));
    }

    void anElementThatAPageKeepsStaysAsItWasShown()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        ClientSpy spy(session->authClient());
        const auto kept = session->userConfig()->getAccountData(StoreFixture::key(1));
        const auto other = session->userConfig()->getAccountData(StoreFixture::key(2));
        grant(session->authClient(), fixture, 1, name::bob);
        spy.wait(2);
        QCOMPARE(int(kept->authType), 1);
        QVERIFY(session->userConfig()->getAccountData(StoreFixture::key(1)) != kept);
        QVERIFY(session->userConfig()->getAccountData(StoreFixture::key(2)) == other);
    }

    void aBurstThatChangesNothingDisturbsNobody()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        ClientSpy spy(session->authClient());
        grant(session->authClient(), fixture, 1, QStringLiteral("zoe"));
        grant(session->authClient(), fixture, 2, name::bob, false);
        session->authClient()->checkAuthuser(name::bob);
        session->authClient()->checkAuthuser(QStringLiteral("zoe"));
        spy.wait(4);
        QTest::qWait(300);
        QCOMPARE(spy.lines,
                 QStringList({line(1, QStringLiteral("zoe"), QStringLiteral("用户不存在")),
                              line(2, name::bob), QStringLiteral("check bob ok"),
                              QStringLiteral("check zoe 用户不存在")}));
        QCOMPARE(spy.toServers, QVector<bool>({true, false}));
        QCOMPARE(authType(*session, 2), 1);
    }

    void requestsAreAnsweredInOrder()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        ClientSpy spy(session->authClient());
        GW::CAuthClient* client = session->authClient();
        grant(client, fixture, 1, name::bob);
        client->delAuth(name::bob, StoreFixture::account(1), {});
        grant(client, fixture, 1, name::dora);
        client->setSubUser(name::dora, false);
        grant(client, fixture, 2, name::dora);
        client->setSubUser(name::dora, true);
        QCOMPARE(spy.wait(7),
                 QStringList({line(1, name::bob), QStringLiteral("del 880001 bob ok"),
                              line(1, name::dora), QStringLiteral("state dora off ok"),
                              line(2, name::dora, QStringLiteral("用户已被禁用")),
                              QStringLiteral("state dora on ok"), QStringLiteral("changed")}));
    }

    void anEnableBehindAFailedPasswordChangeFailsToo()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        ClientSpy spy(session->authClient());
        GW::CAuthClient* client = session->authClient();
        client->updateSubUser(name::erin, QStringLiteral("no digest"));
        client->setSubUser(name::erin, true);
        client->setSubUser(name::dora, true);
        QCOMPARE(
            spy.wait(3),
            QStringList({QStringLiteral("password erin no digest 密码摘要必须是40位十六进制字符"),
                         QStringLiteral("state erin on 子用户密码未能修改，没有启用"),
                         QStringLiteral("state dora on ok")}));
        QVERIFY(!client->isSubUserActive(name::erin));

        // Once he knows of the failure, enabling him with the old password is his decision.
        client->setSubUser(name::erin, true);
        QCOMPARE(spy.wait(5).mid(3),
                 QStringList({QStringLiteral("state erin on ok"), QStringLiteral("changed")}));
    }

    void anEnableSentBeforeTheFailureWasHeardOfFailsToo()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        ClientSpy spy(session->authClient());
        GW::CAuthClient* client = session->authClient();
        // The two requests run in transactions of their own, because the first result (of the
        // grant) arrives before that of the password, and the enable is sent from there.
        bool sent = false;
        spy.onLine = [&] {
            if (!sent) {
                sent = true;
                client->setSubUser(name::erin, true);
            }
        };
        grant(client, fixture, 1, name::bob);
        client->updateSubUser(name::erin, QStringLiteral("no digest"));
        QVERIFY(spy.wait(4).contains(QStringLiteral("state erin on 子用户密码未能修改，没有启用")));
    }

    void aNewPasswordAndAnEnableLetTheSubUserIn()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        ClientSpy spy(session->authClient());
        const QString digest = passwordDigest(QStringLiteral("new password"));
        session->authClient()->updateSubUser(name::erin, digest);
        session->authClient()->setSubUser(name::erin, true);
        QCOMPARE(spy.wait(3),
                 QStringList({QStringLiteral("password erin %1 ok").arg(digest),
                              QStringLiteral("state erin on ok"), QStringLiteral("changed")}));
        QVERIFY(session->authClient()->isSubUserActive(name::erin));
        QVERIFY(
            Session::signIn(fixture.options(), name::erin, QStringLiteral("new password")).session);
        QVERIFY(!Session::signIn(fixture.options(), name::erin, QStringLiteral("pw-erin")).session);
    }

    void aResultForADestroyedReceiverHurtsNobody()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        ClientSpy staying(session->authClient());
        {
            ClientSpy leaving(session->authClient());
            grant(session->authClient(), fixture, 1, name::bob);
            QCoreApplication::processEvents();
        }
        staying.wait(2);
        QCOMPARE(fixture.grantsOf(1), QStringList(QStringLiteral("bob current server")));
    }

    void requestsUnderWayAreFinishedWhenTheSessionEnds_data()
    {
        QTest::addColumn<int>("turns");
        QTest::newRow("not even handed over") << 0;
        QTest::newRow("handed over") << 1;
    }

    void requestsUnderWayAreFinishedWhenTheSessionEnds()
    {
        QFETCH(int, turns);
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        ClientSpy spy(session->authClient());
        for (int account = 1; account <= 5; ++account)
            grant(session->authClient(), fixture, account, name::bob);
        for (int i = 0; i < turns; ++i)
            QCoreApplication::processEvents();
        spy.lines.clear();
        session.reset();
        QVERIFY(spy.lines.isEmpty());
        QCoreApplication::processEvents();
        QVERIFY(spy.lines.isEmpty());
        for (int account = 1; account <= 5; ++account) {
            QCOMPARE(fixture.grantsOf(account), QStringList(QStringLiteral("bob current server")));
        }
    }

    void theSessionMayEndInsideAResult()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        ClientSpy spy(session->authClient());
        spy.onLine = [&] { session.reset(); };
        for (int account = 1; account <= 5; ++account)
            grant(session->authClient(), fixture, account, name::bob);
        spy.wait(1);
        QCoreApplication::processEvents();
        QCOMPARE(spy.lines, QStringList(line(1, name::bob)));
        QCOMPARE(fixture.grantsOf(5), QStringList(QStringLiteral("bob current server")));
    }

    void resultsGoOnWhileAPageRunsADialogInsideOne()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        ClientSpy spy(session->authClient());
        bool arrivedInside = false;
        bool first = true;
        spy.onLine = [&] {
            if (!std::exchange(first, false))
                return;
            QEventLoop dialog;
            QTimer::singleShot(5000, &dialog, &QEventLoop::quit);
            spy.onLine = [&] {
                if (spy.lines.size() == 6) {
                    arrivedInside = true;
                    dialog.quit();
                }
            };
            dialog.exec();
        };
        for (int account = 1; account <= 5; ++account)
            grant(session->authClient(), fixture, account, name::bob);
        spy.wait(6);
        QVERIFY(arrivedInside);
        QCOMPARE(spy.lines.last(), QStringLiteral("changed"));
    }

    void thousandsOfResultsLeaveTheEventLoopTurning()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        constexpr int count = 3000;
        QVERIFY(fixture.addAccounts(1000, count));
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        int results = 0;
        int turns = 0;
        int lastTurnResults = 0;
        int mostPerTurn = 0;
        connect(session->authClient(), &GW::CAuthClient::sigAddAuthResult, this, [&] {
            ++results;
            // As slow as a page that repaints a row.
            QElapsedTimer timer;
            timer.start();
            while (timer.nsecsElapsed() < 50'000) {
            }
        });
        QTimer beat;
        connect(&beat, &QTimer::timeout, this, [&] {
            if (results > 0 && results < count)
                ++turns;
            mostPerTurn = std::max(mostPerTurn, results - lastTurnResults);
            lastTurnResults = results;
        });
        beat.start(0);
        for (int i = 0; i < count; ++i)
            grant(session->authClient(), fixture, 1000 + i, name::bob);
        QTRY_COMPARE_WITH_TIMEOUT(results, count, 60000);
        // 3,000 results of 50 µs are 150 ms, which is at least 18 slices of 8 ms.
        QVERIFY2(turns >= 10, qPrintable(QString::number(turns)));
        QVERIFY2(mostPerTurn < count / 4, qPrintable(QString::number(mostPerTurn)));
        session->authClient()->disconnect(this);
    }

    void aChangeByAnotherSessionShowsWithoutAClick()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto alice = fixture.signIn(name::alice);
        const auto bob = fixture.signIn(name::bob);
        const auto dora = fixture.signIn(name::dora);
        QVERIFY(alice && bob && dora);
        ClientSpy bobSpy(bob->authClient());
        ClientSpy doraSpy(dora->authClient());
        grant(alice->authClient(), fixture, 1, name::bob);
        QCOMPARE(bobSpy.wait(1), QStringList(QStringLiteral("changed")));
        QCOMPARE(authType(*bob, 1), 2);
        alice->authClient()->delAuth(name::bob, StoreFixture::account(1), {});
        bobSpy.wait(2);
        QCOMPARE(authType(*bob, 1), -1);
        // Whom it does not concern is not disturbed in what he is typing.
        QTest::qWait(300);
        QVERIFY(doraSpy.lines.isEmpty());
        QCOMPARE(bobSpy.lines.size(), 2);
    }

    void theSecretReachesTheGranteeWithTheGrant()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto alice = fixture.signIn(name::alice);
        QVERIFY(alice);
        ClientSpy spy(alice->authClient());
        grant(alice->authClient(), fixture, 1, name::bob);
        GW::CAuthLimit later = fixture.days(3, 5);
        alice->authClient()->addAuth(name::bob, StoreFixture::account(2), later, {}, true);
        spy.wait(3);
        const auto bob = fixture.signIn(name::bob);
        QVERIFY(bob);
        QCOMPARE(bob->userConfig()->getAccountData(StoreFixture::key(1))->accountPrivate,
                 std::string("secret-1"));
        // A grant that has not begun is shown with its days, but discloses nothing yet.
        QCOMPARE(authType(*bob, 2), 2);
        QCOMPARE(bob->userConfig()->getAccountData(StoreFixture::key(2))->accountPrivate,
                 std::string());
        ClientSpy bobSpy(bob->authClient());
        fixture.setNow(fixture.options().now().addDays(3));
        bobSpy.wait(1);
        QCOMPARE(bob->userConfig()->getAccountData(StoreFixture::key(2))->accountPrivate,
                 std::string("secret-2"));
    }
};

int main(int argc, char** argv)
{
    return runTest<AuthClientTest>(argc, argv);
}

#include "AuthClientTest.moc"
