#include "tests/backend/StoreFixture.h"

#include "authsetting/services/AccountKey.h"
#include "backend/store/Database.h"
#include "backend/store/PasswordHash.h"
#include "utils/ExchangeTimeZone.h"

#include <QDir>
#include <QFile>

using backend::GrantRecord;
using backend::StoreAdmin;
using backend::StoreOptions;
using backend::StoreRequest;

StoreFixture::StoreFixture() : m_now(std::make_shared<std::atomic<qint64>>(0))
{
    if (ServerFixture::isWanted())
        m_server = std::make_unique<ServerFixture>();
    setNow(QDateTime(QDate(2024, 3, 15), QTime(10, 0), utils::exchangeTimeZone()));
}

QString StoreFixture::path() const
{
    return QDir(m_folder.path()).filePath(QStringLiteral("data/store.db"));
}

QString StoreFixture::place() const
{
    return m_server ? m_server->url() : path();
}

StoreOptions StoreFixture::options() const
{
    StoreOptions options;
    options.location = m_server ? m_server->location() : backend::StoreLocation::parse(path());
    options.dataFolder = m_folder.path();
    options.clock = [now = m_now] { return QDateTime::fromMSecsSinceEpoch(*now, Qt::UTC); };
    options.pollIntervalMs = 50;
    options.busyTimeoutMs = 2000;
    options.cheapCryptographyForTests = true;
    return options;
}

std::unique_ptr<StoreAdmin> StoreFixture::admin() const
{
    QString error;
    std::unique_ptr<StoreAdmin> admin =
        StoreAdmin::open(m_server ? m_server->asAdministrator(options()) : options(), &error);
    if (!admin)
        qWarning("The store cannot be opened: %s", qPrintable(error));
    return admin;
}

std::unique_ptr<StoreAdmin> StoreFixture::fill() const
{
    std::unique_ptr<StoreAdmin> store = admin();
    if (!store)
        return nullptr;
    const auto password = [](const QString& user) { return QString(QStringLiteral("pw-") + user); };
    store->addPlatform(StoreAdmin::Kind::Futures, {1, "期货平台"});
    store->addPlatform(StoreAdmin::Kind::Stock, {1, "股票平台"});
    store->addBroker(StoreAdmin::Kind::Futures, {1, "9999", "期货公司"});
    store->addBroker(StoreAdmin::Kind::Stock, {1, "9999", "证券公司"});
    store->addUser(name::alice, password(name::alice));
    store->addUser(name::bob, password(name::bob));
    store->addUser(name::carl, password(name::carl), false);
    store->addSubUser(name::alice, name::dora, password(name::dora));
    store->addSubUser(name::alice, name::erin, password(name::erin), false);
    for (int number = 1; number <= 7; ++number)
        store->addAccount(name::alice, account(number));
    store->addSubAccount(account(6), account(7));
    store->addAccount(name::bob, account(20));
    if (!store->commit()) {
        qWarning("The store cannot be filled: %s", qPrintable(store->error()));
        return nullptr;
    }
    return store;
}

bool StoreFixture::addAccounts(int first, int count) const
{
    const std::unique_ptr<StoreAdmin> store = admin();
    for (int number = first; store && number < first + count; ++number)
        store->addAccount(name::alice, account(number));
    return store && store->commit();
}

bool StoreFixture::addGrant(const GrantRecord& grant) const
{
    const std::unique_ptr<StoreAdmin> store = admin();
    return store && store->addGrant(grant) && store->commit();
}

std::unique_ptr<backend::UserStore> StoreFixture::storeOf(const QString& user) const
{
    const QStringList users{name::alice, name::bob, name::carl, name::dora, name::erin};
    StoreOptions login = options();
    if (m_server) {
        login.location.user = user;
        login.credential = backend::passwordDigest(QStringLiteral("pw-") + user);
    }
    auto store = backend::UserStore::create(login, users.indexOf(user) + 1, user);
    const backend::StoreFailure failure = store->open();
    if (failure) {
        qWarning("The store cannot be opened: %s", qPrintable(failure.text()));
        return nullptr;
    }
    store->takeChanges();
    return store;
}

std::unique_ptr<backend::Session> StoreFixture::signIn(const QString& user) const
{
    backend::SignInResult result =
        backend::Session::signIn(options(), user, QStringLiteral("pw-") + user);
    if (!result.session)
        qWarning("%s cannot sign in: %s", qPrintable(user), qPrintable(result.error));
    return std::move(result.session);
}

void StoreFixture::setNow(const QDateTime& now)
{
    *m_now = now.toMSecsSinceEpoch();
    if (m_server)
        m_server->setNow(now);
}

QDate StoreFixture::today() const
{
    return options().now().date();
}

mbservice::CAccountInfo StoreFixture::account(int number)
{
    mbservice::CAccountInfo account;
    account.accountType = number % 2 == 1 ? 1 : 2;
    account.platformId = 1;
    account.brokerId = "9999";
    account.accountId = std::to_string(880000 + number);
    account.accountPrivate = "secret-" + std::to_string(number);
    if (number == 2)
        account.accountAlias = "备用账户";
    return account;
}

QString StoreFixture::key(int number)
{
    return GW::genAccountKeyQs(account(number));
}

qint32 StoreFixture::midnight(const QDate& day)
{
    return static_cast<qint32>(day.startOfDay(utils::exchangeTimeZone()).toSecsSinceEpoch());
}

GW::CAuthLimit StoreFixture::days(int first, int last) const
{
    GW::CAuthLimit limit;
    limit.startTime = midnight(today().addDays(first));
    limit.endTime = midnight(today().addDays(last));
    return limit;
}

GW::CAuthLimit StoreFixture::daysWithRatio(int first, int last, double ratio) const
{
    GW::CAuthLimit limit = days(first, last);
    limit.availableMarginRatio = ratio;
    return limit;
}

StoreRequest StoreFixture::add(int number, const QString& grantee, bool toServer) const
{
    StoreRequest request;
    request.kind = StoreRequest::Kind::Add;
    request.user = grantee;
    request.account = account(number);
    request.limit = days(0, 7);
    request.flag = toServer;
    return request;
}

StoreRequest StoreFixture::cancel(int number, const QString& grantee) const
{
    StoreRequest request;
    request.kind = StoreRequest::Kind::Cancel;
    request.user = grantee;
    request.account = account(number);
    return request;
}

QStringList StoreFixture::grantsOf(int number) const
{
    const QStringList states{QStringLiteral("prepared"), QStringLiteral("current"),
                             QStringLiteral("cancelled"), QStringLiteral("expired")};
    QStringList found;
    const std::unique_ptr<StoreAdmin> store = admin();
    if (!store)
        return {QStringLiteral("no store")};
    const QVector<GrantRecord> grants = store->grants();
    for (const GrantRecord& grant : grants) {
        if (!mbservice::isSameAccount(grant.account, account(number)))
            continue;
        found.append(grant.grantee + QLatin1Char(' ') +
                     states.at(static_cast<int>(grant.state) - 1) +
                     (grant.source == backend::GrantSource::File ? QStringLiteral(" file")
                                                                 : QStringLiteral(" server")) +
                     (grant.redeemed ? QStringLiteral(" redeemed") : QString()));
    }
    return found;
}

qint64 StoreFixture::commits() const
{
    if (m_server) {
        return m_server
            ->value(QStringLiteral("SELECT count(DISTINCT xmin::text) FROM authsetting.grants"))
            .toLongLong();
    }
    // The change counter in the file's header (offset 24).
    QFile file(path());
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray header = file.read(28);
    qint64 counter = 0;
    for (int i = 24; i < 28; ++i)
        counter = counter * 256 + static_cast<unsigned char>(header[i]);
    return counter;
}

qint64 StoreFixture::auditCount(const QString& action) const
{
    const QString sql =
        QStringLiteral("SELECT COUNT(*) FROM %1audit_trail WHERE action = '%2' AND error = ''");
    if (m_server)
        return m_server->value(sql.arg(QStringLiteral("authsetting."), action)).toLongLong();
    backend::Database database(options());
    database.open(backend::Database::Creation::Forbidden, backend::Database::Inspection::Whole);
    return database.execute(sql.arg(QString(), action)).toLongLong();
}

void StoreFixture::meddle(const QString& sql) const
{
    if (m_server) {
        m_server->value(QStringLiteral("SET search_path = authsetting; ") + sql);
        return;
    }
    backend::Database database(options());
    database.open(backend::Database::Creation::Forbidden, backend::Database::Inspection::Brief);
    database.execute(sql);
}
