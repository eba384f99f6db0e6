#include "tests/postgresql/DesksFixture.h"

#include "authsetting/services/AuthClient.h"
#include "utils/ExchangeTimeZone.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

using backend::StoreAdmin;
using backend::StoreOptions;

namespace {

constexpr int secondsOfWeek = 7 * 86400;

// Runs a program of the server's, as the server's own user where that is another one.
bool runAsServer(const QStringList& arguments)
{
    QStringList command =
        qEnvironmentVariable("AUTHSETTING_TEST_PGRUN").split(QLatin1Char(' '), Qt::SkipEmptyParts);
    command.append(qEnvironmentVariable("AUTHSETTING_TEST_PGBIN") + QStringLiteral("/pg_ctl"));
    command += arguments;
    command += {QStringLiteral("-D"), qEnvironmentVariable("AUTHSETTING_TEST_PGDATA"),
                QStringLiteral("-w"), QStringLiteral("-s")};
    QProcess process;
    process.setWorkingDirectory(QStringLiteral("/"));
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(command.takeFirst(), command);
    return process.waitForFinished(60'000) && process.exitCode() == 0;
}

QStringList psql(const QString& database, const QString& sql)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral("psql"),
                  {QStringLiteral("-X"), QStringLiteral("-q"), QStringLiteral("-A"),
                   QStringLiteral("-t"), QStringLiteral("-v"), QStringLiteral("ON_ERROR_STOP=1"),
                   QStringLiteral("-d"), database, QStringLiteral("-c"), sql});
    if (!process.waitForFinished(60'000) || process.exitCode() != 0)
        return {QStringLiteral("failed")};
    return QString::fromUtf8(process.readAllStandardOutput())
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QString newDatabaseName()
{
    static int count = 0;
    return QStringLiteral("desks_%1_%2").arg(QCoreApplication::applicationPid()).arg(++count);
}

} // namespace

DesksFixture::DesksFixture() : m_database(newDatabaseName())
{
    psql(QStringLiteral("postgres"), QStringLiteral("CREATE DATABASE ") + m_database);
}

DesksFixture::~DesksFixture()
{
    psql(QStringLiteral("postgres"),
         QStringLiteral("DROP DATABASE IF EXISTS %1 WITH (FORCE)").arg(m_database));
}

quint16 DesksFixture::serverPort()
{
    return static_cast<quint16>(qEnvironmentVariableIntValue("PGPORT"));
}

QString DesksFixture::url(quint16 port) const
{
    // The proxy reads along.
    return QStringLiteral("postgresql://127.0.0.1:%1/%2?sslmode=disable")
        .arg(port == 0 ? serverPort() : port)
        .arg(m_database);
}

StoreOptions DesksFixture::options(quint16 port) const
{
    StoreOptions options;
    options.location = backend::StoreLocation::parse(url(port));
    options.dataFolder = m_folder.path();
    options.cheapCryptographyForTests = true;
    return options;
}

StoreOptions DesksFixture::adminOptions() const
{
    StoreOptions options = this->options();
    options.location.user = qEnvironmentVariable("PGUSER");
    options.credential = qEnvironmentVariable("PGPASSWORD");
    return options;
}

std::unique_ptr<StoreAdmin> DesksFixture::admin() const
{
    QString error;
    std::unique_ptr<StoreAdmin> admin = StoreAdmin::open(adminOptions(), &error);
    if (!admin)
        qWarning("The store cannot be opened: %s", qPrintable(error));
    return admin;
}

bool DesksFixture::fill(int accounts)
{
    const std::unique_ptr<StoreAdmin> store = admin();
    if (!store)
        return false;
    const QString alice = QStringLiteral("alice");
    store->addPlatform(StoreAdmin::Kind::Futures, {1, "期货平台"});
    store->addBroker(StoreAdmin::Kind::Futures, {1, "9999", "期货公司"});
    store->addUser(alice, QStringLiteral("pw-alice"));
    store->addUser(QStringLiteral("bob"), QStringLiteral("pw-bob"));
    store->addSubUser(alice, QStringLiteral("dora"), QStringLiteral("pw-dora"));
    for (int number = 1; number <= accounts; ++number)
        store->addAccount(alice, account(number));
    if (!store->commit()) {
        qWarning("The store cannot be filled: %s", qPrintable(store->error()));
        return false;
    }
    query(QStringLiteral("UPDATE authsetting.settings SET test_now = '2024-03-15 02:00:00+00'"));
    return true;
}

std::unique_ptr<backend::Session> DesksFixture::signIn(const QString& user, quint16 port) const
{
    backend::SignInResult result =
        backend::Session::signIn(options(port), user, QStringLiteral("pw-") + user);
    if (!result.session)
        qWarning("%s cannot sign in: %s", qPrintable(user), qPrintable(result.error));
    return std::move(result.session);
}

bool DesksFixture::stopServer() const
{
    return runAsServer({QStringLiteral("stop"), QStringLiteral("-m"), QStringLiteral("immediate")});
}

bool DesksFixture::startServer() const
{
    // A log of its own: the server must not keep this test's output open.
    const QString log = qEnvironmentVariable("AUTHSETTING_TEST_PGDATA") + QStringLiteral("/log");
    return runAsServer({QStringLiteral("start"), QStringLiteral("-l"), log, QStringLiteral("-o"),
                        QStringLiteral("-p %1").arg(serverPort())});
}

bool DesksFixture::reloadServer() const
{
    const QString loaded = QStringLiteral("SELECT pg_conf_load_time()");
    const QStringList before = query(loaded);
    return runAsServer({QStringLiteral("reload")}) &&
           QTest::qWaitFor([&] { return query(loaded) != before; }, 10'000);
}

bool DesksFixture::restartServer() const
{
    return stopServer() && startServer();
}

QStringList DesksFixture::query(const QString& sql) const
{
    return psql(m_database, sql);
}

QStringList DesksFixture::contradictions() const
{
    QStringList found = query(QStringLiteral("SELECT * FROM authsetting.admin_verify()"));
    // Each account has as many current grants as were made and not ended.
    found += query(QStringLiteral(
        "SELECT a.account_number, g.current, t.made, t.ended FROM authsetting.accounts a, "
        "LATERAL (SELECT count(*) AS current FROM authsetting.grants g "
        "  WHERE g.account_id = a.id AND g.state = 2) g, "
        "LATERAL (SELECT count(*) FILTER (WHERE t.action = 'grant') AS made, "
        "  count(*) FILTER (WHERE t.action IN ('cancel', 'expire')) AS ended "
        "  FROM authsetting.audit_trail t WHERE t.account_id = a.id AND t.error = '') t "
        "WHERE g.current <> t.made - t.ended"));
    // Each grant is one entry, and each cancelled one another.
    found += query(QStringLiteral(
        "SELECT a.account_number, g.all_made, g.cancelled, t.made, t.ended "
        "FROM authsetting.accounts a, "
        "LATERAL (SELECT count(*) AS all_made, count(*) FILTER (WHERE g.state = 3) AS cancelled "
        "  FROM authsetting.grants g WHERE g.account_id = a.id) g, "
        "LATERAL (SELECT count(*) FILTER (WHERE t.action = 'grant') AS made, "
        "  count(*) FILTER (WHERE t.action = 'cancel') AS ended "
        "  FROM authsetting.audit_trail t WHERE t.account_id = a.id AND t.error = '') t "
        "WHERE g.all_made <> t.made OR g.cancelled <> t.ended"));
    return found;
}

mbservice::CAccountInfo DesksFixture::account(int number)
{
    mbservice::CAccountInfo account;
    account.accountType = 1;
    account.platformId = 1;
    account.brokerId = "9999";
    account.accountId = std::to_string(880000 + number);
    account.accountPrivate = "secret-" + std::to_string(number);
    return account;
}

GW::CAuthLimit DesksFixture::week()
{
    GW::CAuthLimit limit;
    limit.startTime = static_cast<qint32>(
        QDate(2024, 3, 15).startOfDay(utils::exchangeTimeZone()).toSecsSinceEpoch());
    limit.endTime = limit.startTime + secondsOfWeek;
    return limit;
}

void DesksFixture::grant(const backend::Session& session, int number, const QString& grantee)
{
    GW::CAuthLimit limit = week();
    session.authClient()->addAuth(grantee, account(number), limit, number, true);
}
