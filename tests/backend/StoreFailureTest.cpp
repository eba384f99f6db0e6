#include "authsetting/services/UserConfig.h"
#include "backend/store/Database.h"
#include "tests/backend/ClientSpy.h"
#include "tests/backend/HelperProcess.h"
#include "tests/backend/StoreFixture.h"
#include "tests/support/TestCase.h"

#include <QFile>

using namespace backend;

namespace {

void sendOneOfEach(GW::CAuthClient* client, const StoreFixture& fixture)
{
    GW::CAuthLimit limit = fixture.days(0, 7);
    client->addAuth(name::bob, StoreFixture::account(1), limit, 1, true);
    client->addAuth(name::bob, StoreFixture::account(2), limit, 1, false);
    client->delAuth(name::bob, StoreFixture::account(3), 1);
    client->checkAuthuser(name::bob);
    client->setSubUser(name::dora, false);
    client->updateSubUser(name::dora, QString(40, u'a'));
}

QStringList oneErrorEach(const QString& error)
{
    return {QStringLiteral("add 880001 bob ") + error,
            QStringLiteral("add 880002 bob ") + error,
            QStringLiteral("del 880003 bob ") + error,
            QStringLiteral("check bob ") + error,
            QStringLiteral("state dora off ") + error,
            QStringLiteral("password dora %1 ").arg(QString(40, u'a')) + error};
}

} // namespace

class StoreFailureTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theClockEndsAGrantEvenInAStoreThatCannotBeWritten()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto store = fixture.storeOf(name::alice);
        QVERIFY(store->run({fixture.add(1, name::bob)})[0].ok);
        store->takeChanges();
        Database other(fixture.options());
        other.open(Database::Creation::Forbidden, Database::Inspection::Brief);
        other.execute(QStringLiteral("BEGIN IMMEDIATE"));
        fixture.setNow(fixture.options().now().addDays(8));
        store->poll();
        QVERIFY(store->takeChanges().all);
        QVERIFY(store->model().own[0].grant.isNull());
        other.execute(QStringLiteral("ROLLBACK"));
        QCOMPARE(fixture.grantsOf(1), QStringList(QStringLiteral("bob current server")));
        const StoreReply reply = store->run({fixture.add(1, name::dora)})[0];
        QVERIFY2(reply.ok, qPrintable(reply.error));
        QCOMPARE(fixture.grantsOf(1), QStringList({QStringLiteral("bob expired server"),
                                                   QStringLiteral("dora current server")}));
    }

    void aLockedStoreGivesEachRequestAnError()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        ClientSpy spy(session->authClient());
        Database other(fixture.options());
        other.open(Database::Creation::Forbidden, Database::Inspection::Brief);
        other.execute(QStringLiteral("BEGIN EXCLUSIVE"));
        sendOneOfEach(session->authClient(), fixture);
        QCOMPARE(spy.wait(6), oneErrorEach(QStringLiteral("授权数据库正忙，请稍后重试")));
        // Reads answer from memory, and afterwards everything works again.
        QVERIFY(session->authClient()->isSubUserActive(name::dora));
        other.execute(QStringLiteral("ROLLBACK"));
        spy.lines.clear();
        GW::CAuthLimit limit = fixture.days(0, 7);
        session->authClient()->addAuth(name::bob, StoreFixture::account(1), limit, 1, true);
        QCOMPARE(spy.wait(2),
                 QStringList({QStringLiteral("add 880001 bob ok"), QStringLiteral("changed")}));
    }

    void aReplacedStoreGivesEachRequestAnErrorAndIsLeftAlone_data()
    {
        QTest::addColumn<bool>("another");
        QTest::newRow("deleted") << false;
        QTest::newRow("another in its place") << true;
    }

    void aReplacedStoreGivesEachRequestAnErrorAndIsLeftAlone()
    {
        QFETCH(bool, another);
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        ClientSpy spy(session->authClient());
        const QString aside = fixture.path() + QStringLiteral(".old");
        QVERIFY(QFile::rename(fixture.path(), aside));
        if (another)
            QVERIFY(QFile::copy(aside, fixture.path()));
        sendOneOfEach(session->authClient(), fixture);
        const QString error = QStringLiteral("授权数据库文件已被替换或删除，请重新登录");
        QCOMPARE(spy.wait(6), oneErrorEach(error));
        QCOMPARE(QFile::exists(fixture.path()), another);
        if (another)
            QCOMPARE(fixture.grantsOf(1), QStringList());
    }

    void aRowThatTheTablesForbidFailsItsOwnRequestOnly()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto store = fixture.storeOf(name::alice);
        QVERIFY(store);
        QVector<StoreRequest> requests{fixture.add(1, name::bob), fixture.add(2, name::bob)};
        Database other(fixture.options());
        other.open(Database::Creation::Forbidden, Database::Inspection::Brief);
        other.execute(QStringLiteral("CREATE TRIGGER no_grants BEFORE INSERT ON grants WHEN"
                                     " new.account_id = 2 BEGIN SELECT RAISE(ABORT, 'no'); END"));
        const QVector<StoreReply> replies = store->run(requests);
        QVERIFY(replies[0].ok);
        QCOMPARE(replies[1].error, QStringLiteral("数据与授权数据库中的记录冲突"));
        QCOMPARE(fixture.grantsOf(1), QStringList(QStringLiteral("bob current server")));
        QCOMPARE(fixture.grantsOf(2), QStringList());
        QVERIFY(store->model().own[1].grant.isNull());
    }

    void aFullDiskGivesEachRequestAnErrorAndLosesNothing_data()
    {
        QTest::addColumn<int>("room");
        QTest::newRow("not a page") << 0;
        QTest::newRow("some pages") << 20'000;
        QTest::newRow("nearly enough") << 150'000;
    }

    void aFullDiskGivesEachRequestAnErrorAndLosesNothing()
    {
        QFETCH(int, room);
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        QVERIFY(fixture.addAccounts(1000, 2000));
        QVERIFY(fixture.storeOf(name::alice)->run({fixture.add(1, name::bob)})[0].ok);
        HelperProcess helper({QStringLiteral("starved"), fixture.path(), name::alice, name::bob,
                              QString::number(room)});
        QVERIFY(helper.waitForEnd());
        QCOMPARE(helper.lines.takeFirst(), QStringLiteral("ready"));
        const int sent = helper.lines.takeFirst().toInt();
        QCOMPARE(sent, 2004);
        QCOMPARE(helper.lines.takeLast(), QStringLiteral("granted in memory: 1"));
        QCOMPARE(helper.lines.size(), sent);
        for (const QString& line : std::as_const(helper.lines)) {
            QVERIFY2(line.endsWith(QStringLiteral("授权数据库读写失败，请检查磁盘")) ||
                         line.endsWith(QStringLiteral("磁盘空间不足，授权数据库无法写入")),
                     qPrintable(line));
        }
        const auto admin = fixture.admin();
        QCOMPARE(admin->verify(), QString());
        QCOMPARE(admin->grants().size(), 1);
    }
};

int main(int argc, char** argv)
{
    return runTest<StoreFailureTest>(argc, argv);
}

#include "StoreFailureTest.moc"
