#include "tests/postgresql/Desk.h"
#include "tests/postgresql/DesksFixture.h"
#include "tests/postgresql/StalledGrant.h"
#include "tests/postgresql/TcpProxy.h"
#include "tests/support/TestCase.h"

#include <QElapsedTimer>

namespace {

const QString alice = QStringLiteral("alice");
const QString bob = QStringLiteral("bob");
const QString dora = QStringLiteral("dora");

constexpr int firstNumber = 880001;
constexpr int importPage = 202;
constexpr int overviewPage = 201;

// Columns of what the tables show.
constexpr int listNumber = 2;
constexpr int listOtherSide = 4;
constexpr int batchNumber = 3;
constexpr int batchGrantee = 5;
constexpr int overviewGrantee = 4;
constexpr int overviewOperation = 7;
constexpr int importNumber = 2;
constexpr int importGrantor = 4;

// With what a loaded machine may add before the test sees it.
constexpr int offlineBound = 15'000 + 5'000;
// Less than the five seconds between two looks without a hint.
constexpr int liveBound = 4'000;
// For an answer that nobody but the client itself gives; one from the server would take longer.
constexpr int atOnceBound = 8'000;

const QString granted = QStringLiteral("授权成功");
const QString refused = QStringLiteral("权限出错！错误信息：");

QStringList cell(int account, int column)
{
    return {QStringLiteral("cell"), QString::number(account), QString::number(column)};
}

QStringList tab(const QString& title)
{
    return {QStringLiteral("tab"), title};
}

// Each account of alice's with the one who holds its grant, as the store has it.
QStringList truth(const DesksFixture& fixture)
{
    QStringList rows =
        fixture.query(QStringLiteral("SELECT a.account_number || '|' || coalesce(u.name, '') "
                                     "FROM authsetting.accounts a LEFT JOIN authsetting.grants g "
                                     "ON g.account_id = a.id AND g.state = 2 "
                                     "LEFT JOIN authsetting.users u ON u.id = g.grantee_id"));
    rows.sort();
    return rows;
}

// The accounts that bob has from alice, as the store has it.
QStringList receivedByBob(const DesksFixture& fixture)
{
    QStringList rows;
    for (const QString& row : truth(fixture).filter(QStringLiteral("|bob")))
        rows.append(row.section(QLatin1Char('|'), 0, 0) + QStringLiteral("|alice"));
    return rows;
}

} // namespace

class TwoDesksTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aGrantComesAndGoesAtTheOtherDeskWithoutAClick_data()
    {
        QTest::addColumn<int>("delayMs");
        QTest::newRow("quick traffic") << 0;
        QTest::newRow("slow traffic") << 100;
    }
    void aGrantComesAndGoesAtTheOtherDeskWithoutAClick()
    {
        QFETCH(int, delayMs);
        DesksFixture fixture;
        QVERIFY(fixture.fill(5));
        TcpProxy proxy(DesksFixture::serverPort());
        proxy.delay(delayMs);
        Desk giver(fixture, alice, proxy.port(), overviewPage);
        Desk receiver(fixture, bob, proxy.port(), importPage);
        QVERIFY(giver.signIn());
        QVERIFY(receiver.signIn());
        QVERIFY(receiver.await([&] { return receiver.text("tab") == QStringLiteral("导入授权"); }));
        QCOMPARE(receiver.count("table") + receiver.count("accounts"), 0);
        const int orders = receiver.ordersGiven();

        QVERIFY(giver.prepareGrant(firstNumber + 1, firstNumber + 1, bob));
        QElapsedTimer timer;
        timer.start();
        QVERIFY(giver.grant());
        QVERIFY(receiver.await([&] { return receiver.count("table") == 1; }));
        const qint64 elapsed = timer.elapsed();
        QVERIFY2(elapsed < liveBound + 10 * delayMs, qPrintable(QString::number(elapsed)));
        QVERIFY(receiver.await([&] { return receiver.count("accounts") == 1; }));
        QCOMPARE(receiver.outcomes("table", importNumber, importGrantor), receivedByBob(fixture));
        QCOMPARE(receiver.outcomes("accounts", listNumber, listOtherSide), receivedByBob(fixture));
        QVERIFY(giver.await([&] { return giver.tips(granted) && !giver.isTrue("busy"); }));
        QCOMPARE(giver.outcomes("table", batchNumber, batchGrantee), truth(fixture));

        QVERIFY(giver.orders(
            {tab(QStringLiteral("账号总览")), cell(firstNumber + 1, overviewOperation)}));
        QVERIFY(receiver.await(
            [&] { return receiver.count("table") == 0 && receiver.count("accounts") == 0; }));
        QVERIFY(giver.await([&] {
            return !giver.isTrue("busy") &&
                   giver.row("table", firstNumber + 1).value(overviewGrantee).isEmpty();
        }));
        QCOMPARE(giver.outcomes("accounts", listNumber, listOtherSide), truth(fixture));
        QCOMPARE(receiver.ordersGiven(), orders);
        QVERIFY(giver.leave());
        QVERIFY(receiver.leave());
    }

    void aRestartOfTheServerInMidBatchLeavesOneOutcomeForEachAccount()
    {
        constexpr int accounts = 300;
        DesksFixture fixture;
        QVERIFY(fixture.fill(accounts));
        TcpProxy proxy(DesksFixture::serverPort());
        Desk giver(fixture, alice, proxy.port(), overviewPage);
        Desk receiver(fixture, bob, proxy.port(), importPage);
        QVERIFY(giver.signIn());
        QVERIFY(receiver.signIn());
        QVERIFY(giver.prepareGrant(firstNumber, firstNumber + accounts - 1, bob));
        {
            const StalledGrant middle(fixture, accounts / 2);
            QVERIFY(giver.grant());
            QVERIFY(giver.await([&] { return giver.isTrue("busy"); }));
            QVERIFY(middle.awaitRequests(1));
            QVERIFY(fixture.restartServer());
        }
        QVERIFY(giver.await([&] { return giver.tips(granted) && !giver.isTrue("busy"); }));
        const QStringList stored = truth(fixture);
        QCOMPARE(stored.size(), accounts);
        QCOMPARE(stored.filter(QStringLiteral("|bob")).size(), accounts);
        QCOMPARE(fixture.contradictions(), QStringList());
        QCOMPARE(giver.outcomes("table", batchNumber, batchGrantee), stored);
        QVERIFY(giver.await(
            [&] { return giver.outcomes("accounts", listNumber, listOtherSide) == stored; }));
        const QStringList received = receivedByBob(fixture);
        QVERIFY(receiver.await([&] {
            return receiver.outcomes("table", importNumber, importGrantor) == received &&
                   receiver.outcomes("accounts", listNumber, listOtherSide) == received;
        }));
        QVERIFY(
            receiver.await([&] { return receiver.text("connection") == QStringLiteral("在线"); }));
        QVERIFY(giver.leave());
        QVERIFY(receiver.leave());
    }

    void aDeskThatGetsNoAnswersSaysSoAndGoesOnShowing()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(20));
        TcpProxy proxy(DesksFixture::serverPort());
        Desk lonely(fixture, alice, proxy.port(), overviewPage);
        Desk other(fixture, alice, DesksFixture::serverPort(), overviewPage);
        QVERIFY(lonely.signIn());
        QVERIFY(other.signIn());
        QVERIFY(lonely.await([&] { return lonely.text("connection") == QStringLiteral("在线"); }));
        QCOMPARE(lonely.text("notice"), QString());
        proxy.swallowToServer();
        proxy.swallowToClient();
        QElapsedTimer timer;
        timer.start();
        QVERIFY(lonely.await(
            [&] { return lonely.text("connection").startsWith(QStringLiteral("离线")); }));
        QVERIFY2(timer.elapsed() <= offlineBound, qPrintable(QString::number(timer.elapsed())));
        QVERIFY(lonely.await([&] {
            return lonely.text("notice").contains(QStringLiteral("离线")) &&
                   lonely.text("window").contains(QStringLiteral("离线"));
        }));

        // Everything can still be read.
        QCOMPARE(lonely.outcomes("table", listNumber, overviewGrantee), truth(fixture));
        QVERIFY(lonely.isTrue("usable"));
        QVERIFY(lonely.order(cell(firstNumber + 6, listNumber)));
        QVERIFY(lonely.await(
            [&] { return lonely.texts("chosen").contains(QString::number(firstNumber + 6)); }));
        QVERIFY(lonely.prepareGrant(firstNumber, firstNumber, bob));
        QVERIFY(lonely.await(
            [&] { return lonely.row("table", firstNumber).value(batchGrantee) == bob; }));
        checkRefusedAtOnce(lonely);

        QVERIFY(other.prepareGrant(firstNumber + 4, firstNumber + 4, bob));
        QVERIFY(other.grant());
        QVERIFY(other.await([&] { return other.tips(granted) && !other.isTrue("busy"); }));
        QVERIFY(lonely.row("accounts", firstNumber + 4).value(listOtherSide).isEmpty());

        proxy.pass();
        proxy.cut();
        QVERIFY(lonely.await([&] {
            return lonely.text("connection") == QStringLiteral("在线") &&
                   lonely.tips(QStringLiteral("连接已恢复"));
        }));
        QVERIFY(lonely.await([&] {
            return lonely.outcomes("accounts", listNumber, listOtherSide) == truth(fixture) &&
                   lonely.outcomes("table", batchNumber, batchGrantee) == truth(fixture);
        }));
        QCOMPARE(lonely.text("notice"), QString());
        QCOMPARE(lonely.text("window"), QStringLiteral("授权设置"));
        QCOMPARE(truth(fixture).filter(QStringLiteral("|bob")),
                 QStringList(QStringLiteral("880005|bob")));
        QCOMPARE(fixture.contradictions(), QStringList());
        QVERIFY(lonely.leave());
        QVERIFY(other.leave());
    }

    void aReplyLostAfterTheCommitShowsAsOneGrant()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(5));
        TcpProxy proxy(DesksFixture::serverPort());
        Desk giver(fixture, alice, proxy.port(), overviewPage);
        Desk receiver(fixture, bob, DesksFixture::serverPort(), importPage);
        QVERIFY(giver.signIn());
        QVERIFY(receiver.signIn());
        QVERIFY(giver.prepareGrant(firstNumber, firstNumber, bob));
        proxy.loseReplyOf("\"kind\":\"add\"");
        QVERIFY(giver.grant());
        QVERIFY(giver.await([&] { return giver.tips(granted) && !giver.isTrue("busy"); }));
        QCOMPARE(proxy.lostReplies(), 1);
        QVERIFY(!giver.tips(refused));
        QCOMPARE(giver.outcomes("table", batchNumber, batchGrantee), truth(fixture));
        QVERIFY(receiver.await([&] { return receiver.count("table") == 1; }));
        QCOMPARE(receiver.outcomes("table", importNumber, importGrantor), receivedByBob(fixture));
        QCOMPARE(fixture.query(QStringLiteral("SELECT count(*) FROM authsetting.grants")),
                 QStringList(QStringLiteral("1")));
        QCOMPARE(fixture.contradictions(), QStringList());
        QVERIFY(giver.leave());
        QVERIFY(receiver.leave());
    }

    void bothDesksShowWhoWonAnAccountAndOneReadsWhy()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(5));
        TcpProxy proxy(DesksFixture::serverPort());
        Desk one(fixture, alice, proxy.port(), overviewPage);
        Desk two(fixture, alice, proxy.port(), overviewPage);
        QVERIFY(one.signIn());
        QVERIFY(two.signIn());
        QVERIFY(one.prepareGrant(firstNumber, firstNumber, bob));
        QVERIFY(two.prepareGrant(firstNumber, firstNumber, dora));
        {
            StalledGrant both(fixture, 1);
            QVERIFY(one.grant());
            QVERIFY(both.awaitRequests(1));
            QVERIFY(two.grant());
            QVERIFY(both.awaitRequests(2));
        }
        QVERIFY(one.await([&] { return one.tips(granted) && !one.isTrue("busy"); }));
        QVERIFY(two.await(
            [&] { return two.tips(refused + QStringLiteral("账号已")) && !two.isTrue("busy"); }));
        QVERIFY(!one.tips(refused));
        QVERIFY(!two.tips(granted));
        const QStringList stored = truth(fixture);
        QCOMPARE(stored.filter(QStringLiteral("|bob")).size(), 1);
        for (Desk* desk : {&one, &two}) {
            QVERIFY(desk->await([&] {
                return desk->outcomes("accounts", listNumber, listOtherSide) == stored &&
                       desk->outcomes("table", batchNumber, batchGrantee) == stored;
            }));
        }
        QCOMPARE(fixture.contradictions(), QStringList());
        QVERIFY(one.leave());
        QVERIFY(two.leave());
    }

private:
    // A grant from a desk that knows that the server is away.
    static void checkRefusedAtOnce(Desk& desk)
    {
        QElapsedTimer timer;
        timer.start();
        QVERIFY(desk.grant());
        QVERIFY(desk.await(
            [&] { return desk.tips(refused + QStringLiteral("与服务器的连接已断开")); }));
        QVERIFY2(timer.elapsed() < atOnceBound, qPrintable(QString::number(timer.elapsed())));
        QVERIFY(desk.await([&] { return !desk.isTrue("busy") && desk.isTrue("usable"); }));
    }
};

int main(int argc, char** argv)
{
    return runTest<TwoDesksTest>(argc, argv);
}

#include "TwoDesksTest.moc"
