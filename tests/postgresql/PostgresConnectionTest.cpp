#include "backend/store/postgresql/PostgresConnection.h"

#include "backend/store/postgresql/PostgresError.h"
#include "tests/postgresql/DesksFixture.h"
#include "tests/support/TestCase.h"

#include <QSqlQuery>

using backend::PostgresConnection;
using backend::PostgresError;
using namespace std::chrono_literals;

namespace {

// What a call threw, as "lost", the server's code, or "nothing".
template <class Call>
QString thrownBy(const Call& call)
{
    try {
        call();
    } catch (const PostgresError& error) {
        return error.isConnectionLost() ? QStringLiteral("lost") : error.sqlState();
    }
    return QStringLiteral("nothing");
}

} // namespace

class PostgresConnectionTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void rowsAreHandedOutInTheirOrder()
    {
        const DesksFixture fixture;
        PostgresConnection connection(fixture.adminOptions());
        connection.open();
        QList<int> rows;
        connection.call(QStringLiteral("SELECT n FROM generate_series(?, ?) AS n"), {1, 20'000},
                        10s, [&](const QSqlQuery& row) { rows.append(row.value(0).toInt()); });
        QCOMPARE(rows.size(), 20'000);
        QVERIFY(std::is_sorted(rows.cbegin(), rows.cend()));
    }

    // The rows of a large answer are on their way before the server commits.
    void aCallThatFailsAtItsCommitHandsOutNothing()
    {
        const DesksFixture fixture;
        PostgresConnection connection(fixture.adminOptions());
        connection.open();
        connection.call(QStringLiteral("CREATE TABLE once (n int UNIQUE DEFERRABLE INITIALLY "
                                       "DEFERRED)"),
                        {}, 10s);
        connection.call(QStringLiteral("INSERT INTO once VALUES (1)"), {}, 10s);
        int rows = 0;
        QCOMPARE(thrownBy([&] {
                     connection.call(QStringLiteral("INSERT INTO once VALUES (1) "
                                                    "RETURNING n, repeat('x', 1000000)"),
                                     {}, 10s, [&](const QSqlQuery&) { ++rows; });
                 }),
                 QStringLiteral("23505"));
        QCOMPARE(rows, 0);
        QVERIFY(connection.isOpen());
    }

    // Nothing arrives any more that could make the event loop look.
    void aNoticeThatCameWithAnAnswerIsPassedOn()
    {
        const DesksFixture fixture;
        PostgresConnection connection(fixture.adminOptions());
        PostgresConnection other(fixture.adminOptions());
        connection.open();
        other.open();
        int notices = 0;
        connection.listen(QStringLiteral("changes"), [&notices] { ++notices; });
        // One's own is no news.
        connection.call(QStringLiteral("NOTIFY changes"), {}, 10s);
        QCOMPARE(notices, 0);
        other.call(QStringLiteral("NOTIFY changes"), {}, 10s);
        for (int attempts = 0; notices == 0 && attempts < 10'000; ++attempts)
            connection.call(QStringLiteral("SELECT 1"), {}, 10s);
        QCOMPARE(notices, 1);
        // Neither is it forgotten when the call fails.
        other.call(QStringLiteral("NOTIFY changes"), {}, 10s);
        for (int attempts = 0; notices == 1 && attempts < 10'000; ++attempts)
            QCOMPARE(thrownBy([&] { connection.call(QStringLiteral("SELECT 1/0"), {}, 10s); }),
                     QStringLiteral("22012"));
        QCOMPARE(notices, 2);
    }

    void aConnectionThatIsEndedAtItsCommitIsLost()
    {
        const DesksFixture fixture;
        PostgresConnection connection(fixture.adminOptions());
        connection.open();
        connection.call(QStringLiteral("CREATE TABLE last (n int)"), {}, 10s);
        // Runs at the end of the transaction that inserts, when its rows have left already.
        connection.call(
            QStringLiteral("CREATE FUNCTION leave() RETURNS trigger LANGUAGE plpgsql AS "
                           "$$ BEGIN PERFORM pg_terminate_backend(pg_backend_pid()); "
                           "PERFORM pg_sleep(10); RETURN NULL; END $$"),
            {}, 10s);
        connection.call(QStringLiteral("CREATE CONSTRAINT TRIGGER leave AFTER INSERT ON last "
                                       "DEFERRABLE INITIALLY DEFERRED FOR EACH ROW "
                                       "EXECUTE FUNCTION leave()"),
                        {}, 10s);
        int rows = 0;
        QCOMPARE(thrownBy([&] {
                     connection.call(QStringLiteral("INSERT INTO last VALUES (1) "
                                                    "RETURNING n, repeat('x', 1000000)"),
                                     {}, 10s, [&](const QSqlQuery&) { ++rows; });
                 }),
                 QStringLiteral("lost"));
        QCOMPARE(rows, 0);
        QVERIFY(!connection.isOpen());
        QCOMPARE(fixture.query(QStringLiteral("SELECT count(*) FROM last")),
                 QStringList(QStringLiteral("0")));
        QCOMPARE(thrownBy([&] { connection.call(QStringLiteral("SELECT 1"), {}, 10s); }),
                 QStringLiteral("lost"));
        connection.open();
        QCOMPARE(thrownBy([&] { connection.call(QStringLiteral("SELECT 1"), {}, 10s); }),
                 QStringLiteral("nothing"));
    }
};

int main(int argc, char** argv)
{
    return runTest<PostgresConnectionTest>(argc, argv);
}

#include "PostgresConnectionTest.moc"
