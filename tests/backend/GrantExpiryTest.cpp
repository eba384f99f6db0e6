#include "authsetting/services/UserConfig.h"
#include "tests/backend/ClientSpy.h"
#include "tests/backend/StoreFixture.h"
#include "tests/support/TestCase.h"
#include "utils/ExchangeTimeZone.h"

#include <cstdlib>
#include <ctime>

using namespace backend;

namespace {

QDateTime exchangeTime(const QDate& day, const QTime& time)
{
    return QDateTime(day, time, utils::exchangeTimeZone());
}

int authType(Session& session, int account)
{
    const auto record = session.userConfig()->getAccountData(StoreFixture::key(account));
    return record ? record->authType : -1;
}

} // namespace

class GrantExpiryTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        setZone("UTC");
        TestCase::cleanup();
    }

    void todayIsTheExchangesDayWhateverTheMachinesZone_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::newRow("UTC") << QByteArray("UTC");
        QTest::newRow("far west") << QByteArray("Pacific/Honolulu");
        QTest::newRow("far east") << QByteArray("Pacific/Kiritimati");
    }

    void todayIsTheExchangesDayWhateverTheMachinesZone()
    {
        QFETCH(QByteArray, zone);
        setZone(zone);
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        // Half past midnight in Shanghai is still the day before in London.
        const QDate day(2024, 3, 16);
        fixture.setNow(exchangeTime(day, QTime(0, 30)));
        QCOMPARE(fixture.today(), day);
        const auto store = fixture.storeOf(name::alice);
        StoreRequest yesterday = fixture.add(1, name::bob);
        yesterday.limit = fixture.days(-1, -1);
        StoreRequest today = fixture.add(2, name::bob);
        today.limit = fixture.days(0, 0);
        const QVector<StoreReply> replies = store->run({yesterday, today});
        QCOMPARE(replies[0].error, QStringLiteral("授权结束时间早于今天"));
        QVERIFY2(replies[1].ok, qPrintable(replies[1].error));
        QCOMPARE(store->model().own[1].grant.firstDay, day);
        QCOMPARE(store->model().own[1].grant.lastDay, day);
    }

    void theLastDayIsIncludedToItsLastSecond()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto alice = fixture.signIn(name::alice);
        const auto bob = fixture.signIn(name::bob);
        QVERIFY(alice && bob);
        ClientSpy aliceSpy(alice->authClient());
        ClientSpy bobSpy(bob->authClient());
        GW::CAuthLimit limit = fixture.days(0, 1);
        alice->authClient()->addAuth(name::bob, StoreFixture::account(1), limit, {}, true);
        aliceSpy.wait(2);
        bobSpy.wait(1);
        const QDate last = fixture.today().addDays(1);

        fixture.setNow(exchangeTime(last, QTime(23, 59, 59)));
        QTest::qWait(200);
        QCOMPARE(authType(*alice, 1), 3);
        QCOMPARE(authType(*bob, 1), 2);
        // A new day alone disturbs nobody.
        QCOMPARE(aliceSpy.lines.size(), 2);
        QCOMPARE(bobSpy.lines.size(), 1);

        fixture.setNow(exchangeTime(last.addDays(1), QTime(0, 0, 0)));
        aliceSpy.wait(3);
        bobSpy.wait(2);
        QCOMPARE(authType(*alice, 1), 1);
        QCOMPARE(authType(*bob, 1), -1);
        boost::shared_ptr<GW::CAuthDetail> detail;
        QVERIFY(!alice->authClient()->getAuthDetail(StoreFixture::key(1), detail));
        QCOMPARE(fixture.grantsOf(1), QStringList(QStringLiteral("bob expired server")));

        const QVector<AuditEntry> trail = alice->auditTrail(1);
        QCOMPARE(trail[0].actionText(), QStringLiteral("授权到期"));
        QCOMPARE(trail[0].actor, QString());
        QCOMPARE(trail[0].otherUser, name::bob);
        QCOMPARE(bob->auditTrail(1)[0].otherUser, name::alice);
    }

    void anEndedGrantMakesTheAccountFree()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto store = fixture.storeOf(name::alice);
        QVERIFY(store->run({fixture.add(1, name::bob)})[0].ok);
        fixture.setNow(fixture.options().now().addDays(8));
        const StoreReply reply = store->run({fixture.add(1, name::dora)})[0];
        QVERIFY2(reply.ok, qPrintable(reply.error));
        QCOMPARE(fixture.grantsOf(1), QStringList({QStringLiteral("bob expired server"),
                                                   QStringLiteral("dora current server")}));
    }

    void endedGrantsAreFoundAtTheNextStart()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        QVERIFY(fixture.storeOf(name::alice)->run({fixture.add(1, name::bob)})[0].ok);
        fixture.setNow(fixture.options().now().addDays(30));
        // Whoever comes first ends them for all.
        QVERIFY(fixture.storeOf(name::dora));
        QCOMPARE(fixture.grantsOf(1), QStringList(QStringLiteral("bob expired server")));
        QVERIFY(fixture.storeOf(name::alice)->model().own[0].grant.isNull());
    }

    void grantorAndGranteeInDifferentZonesReadTheSameDays()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        setZone("America/New_York");
        const GW::CAuthLimit sent = fixture.days(0, 3);
        {
            const auto alice = fixture.signIn(name::alice);
            QVERIFY(alice);
            ClientSpy spy(alice->authClient());
            GW::CAuthLimit limit = sent;
            alice->authClient()->addAuth(name::bob, StoreFixture::account(1), limit, {}, true);
            spy.wait(2);
        }
        setZone("Asia/Tokyo");
        const auto bob = fixture.signIn(name::bob);
        QVERIFY(bob);
        boost::shared_ptr<GW::CAuthDetail> detail;
        QVERIFY(bob->authClient()->getAuthDetail(StoreFixture::key(1), detail));
        QCOMPARE(detail->limit.startTime, sent.startTime);
        QCOMPARE(detail->limit.endTime, sent.endTime);
    }

    void theLastGrantableDayFitsIntoAGrant()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto store = fixture.storeOf(name::alice);
        StoreRequest request = fixture.add(1, name::bob);
        request.limit.endTime = StoreFixture::midnight(QDate(2038, 1, 18));
        QVERIFY(store->run({request})[0].ok);
        QCOMPARE(store->model().own[0].grant.lastDay, QDate(2038, 1, 18));
    }

private:
    static void setZone(const QByteArray& zone)
    {
        ::setenv("TZ", zone.constData(), 1);
        ::tzset();
    }
};

int main(int argc, char** argv)
{
    return runTest<GrantExpiryTest>(argc, argv);
}

#include "GrantExpiryTest.moc"
