#include "authsetting/services/UserConfig.h"
#include "backend/store/PasswordHash.h"
#include "backend/store/postgresql/LoginName.h"
#include "tests/postgresql/DesksFixture.h"
#include "tests/support/TestCase.h"

#include <QElapsedTimer>
#include <QProcess>

namespace {

const QString alice = QStringLiteral("alice");
const QString bob = QStringLiteral("bob");
const QString hostile = QStringLiteral("dora");

constexpr int hints = 6'000;
// Between two reads in vain there are 200 ms at least.
constexpr int readsPerSecond = 5;
// With what the end of a flood may still bring.
constexpr int patienceMs = 60'000;

// A login with psql in hand that tells everybody, as often as it can, that something changed.
class Flood
{
public:
    explicit Flood(const DesksFixture& fixture)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("PGUSER"), backend::loginName(hostile));
        environment.insert(QStringLiteral("PGPASSWORD"),
                           backend::passwordDigest(QStringLiteral("pw-") + hostile));
        m_psql.setProcessEnvironment(environment);
        m_psql.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_psql.start(QStringLiteral("psql"),
                     {QStringLiteral("-X"), QStringLiteral("-q"), QStringLiteral("-v"),
                      QStringLiteral("ON_ERROR_STOP=1"), QStringLiteral("-d"),
                      fixture.query(QStringLiteral("SELECT current_database()")).value(0)});
        const QByteArray junk(200, '~');
        QByteArray text;
        for (int hint = 0; hint < hints; ++hint) {
            text += "NOTIFY authsetting_changed, '" + QByteArray::number(hint) + junk + "';\n";
            if (hint == hints / 10)
                text += "SELECT 'begun';\n";
        }
        m_psql.write(text);
        m_psql.closeWriteChannel();
    }

    bool waitUntilBegun() { return m_psql.waitForReadyRead(patienceMs); }
    bool isRunning() const { return m_psql.state() != QProcess::NotRunning; }
    int exitCode() const { return m_psql.exitCode(); }

private:
    QProcess m_psql;
};

// How often the clients have read, once they are gone and the server has added it all up.
int reads(const DesksFixture& fixture)
{
    const QString others =
        QStringLiteral("SELECT count(*) FROM pg_stat_activity WHERE datname = current_database() "
                       "AND pid <> pg_backend_pid()");
    if (!QTest::qWaitFor([&] { return fixture.query(others).value(0) == QStringLiteral("0"); },
                         patienceMs))
        return -1;
    return fixture
        .query(QStringLiteral("SELECT calls FROM pg_stat_user_functions "
                              "WHERE funcname = 'read_model'"))
        .value(0)
        .toInt();
}

} // namespace

class HintFloodTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aFloodOfHintsCostsFewReadsAndHidesNoChange()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(3));
        fixture.query(QStringLiteral("DO $$ BEGIN EXECUTE format('ALTER DATABASE %I SET "
                                     "track_functions = ''pl''', current_database()); END $$"));
        auto giver = fixture.signIn(alice);
        auto receiver = fixture.signIn(bob);
        QVERIFY(giver && receiver);
        QElapsedTimer timer;
        timer.start();
        Flood flood(fixture);
        QVERIFY(flood.waitUntilBegun());
        DesksFixture::grant(*giver, 1, bob);
        QTRY_COMPARE_WITH_TIMEOUT(receiver->userConfig()->accounts.size(), 1, patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(!flood.isRunning(), patienceMs);
        QCOMPARE(flood.exitCode(), 0);
        // The flood gone, everything is as before.
        DesksFixture::grant(*giver, 2, bob);
        QTRY_COMPARE_WITH_TIMEOUT(receiver->userConfig()->accounts.size(), 2, patienceMs);
        giver.reset();
        receiver.reset();
        const int most = static_cast<int>(timer.elapsed() / 1000 + 1) * readsPerSecond;
        const int made = reads(fixture);
        QVERIFY(made > 0);
        // Two clients, and a few reads for signing in and for what did change.
        constexpr int others = 10;
        QVERIFY2(made <= 2 * (most + others),
                 qPrintable(QStringLiteral("%1 reads in %2 ms").arg(made).arg(timer.elapsed())));
    }
};

int main(int argc, char** argv)
{
    return runTest<HintFloodTest>(argc, argv);
}

#include "HintFloodTest.moc"
