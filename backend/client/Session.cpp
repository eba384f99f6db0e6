#include "backend/client/Session.h"

#include "authsetting/services/Services.h"
#include "backend/client/AuthClient.h"
#include "backend/config/Config.h"
#include "backend/config/TimeService.h"
#include "backend/config/UserConfig.h"
#include "backend/store/AuditTrail.h"
#include "backend/store/Database.h"
#include "backend/store/PasswordHash.h"
#include "backend/store/SignIn.h"
#include "backend/store/StoreError.h"
#include "backend/store/TextRules.h"
#include "utils/LogCenter.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace backend {

namespace {

SystemTimeService::MillisecondClock millisecondClock(const StoreOptions& options)
{
    if (!options.clock)
        return {};
    return [clock = options.clock] { return clock().toMSecsSinceEpoch(); };
}

// Where the client keeps the table layouts of a store's users.
QString dataFolder(const StoreOptions& options)
{
    const StoreLocation& location = options.location;
    if (!location.isServer())
        return QFileInfo(location.path).absolutePath();
    const QString base = options.dataFolder.isEmpty()
                             ? QFileInfo(StoreLocation::standard().path).absolutePath()
                             : options.dataFolder;
    const QString name =
        QStringLiteral("%1:%2:%3").arg(location.host).arg(location.port).arg(location.database);
    QString folder = base + QLatin1Char('/') + QString::fromLatin1(QUrl::toPercentEncoding(name));
    QDir().mkpath(folder);
    return folder;
}

// Name and password are checked by connecting as that user.
StoreOptions asUser(StoreOptions options, const QString& user, const QString& digest)
{
    options.location.user = user.normalized(QString::NormalizationForm_C);
    options.credential = digest;
    return options;
}

QString wrongText()
{
    return StoreFailure{StoreFailure::Kind::WrongLogin, {}}.text();
}

QString checkedOnServer(const QString& user, const QString& digest)
{
    const bool isPossible = userNameProblem(user).isEmpty() && isPasswordDigest(digest) &&
                            user.toUtf8().size() <= StoreLocation::maxServerNameLength;
    return isPossible ? QString() : wrongText();
}

} // namespace

class SessionPrivate
{
public:
    SessionPrivate(const StoreOptions& options, const SignIn::Result& user)
        : userId(user.userId), options(options), userConfig(user.userName, dataFolder(options)),
          timeService(millisecondClock(options)),
          authClient(std::make_unique<AuthClient>(options, user.userId, user.userName, userConfig))
    {
    }

    /// Empty, or the reason of a failure.
    QString start()
    {
        QString problem = authClient->start();
        if (!problem.isEmpty())
            return problem;
        const Environment& environment = authClient->environment();
        config.setPlatforms(environment.futuresPlatforms, environment.stockPlatforms);
        userConfig.setBrokers(environment.futuresBrokers, environment.stockBrokers);
        return {};
    }

    qint64 userId;
    StoreOptions options;
    ClientUserConfig userConfig;
    ClientConfig config;
    SystemTimeService timeService;
    std::unique_ptr<AuthClient> authClient;
    /// Opened when the audit trail is first asked for.
    std::unique_ptr<Database> reading;
};

SignInResult Session::signIn(const StoreOptions& options, const QString& user,
                             const QString& password)
{
    const QString digest = passwordDigest(password);
    try {
        SignIn::Result result;
        std::unique_ptr<SessionPrivate> d;
        if (options.location.isServer()) {
            result.error = checkedOnServer(user, digest);
            result.userName = user.normalized(QString::NormalizationForm_C);
            if (result.error.isEmpty())
                d = std::make_unique<SessionPrivate>(asUser(options, user, digest), result);
        } else {
            Database database(options);
            database.open(Database::Creation::Forbidden, Database::Inspection::Whole);
            result = SignIn(database).attempt(user, digest);
            if (result.userId != 0)
                d = std::make_unique<SessionPrivate>(options, result);
        }
        if (!d)
            return {nullptr, result.error};
        const QString problem = d->start();
        if (!problem.isEmpty())
            return {nullptr, problem};
        return {std::unique_ptr<Session>(new Session(std::move(d))), {}};
    } catch (const StoreError& error) {
        utils::CLogCenter::error(error.failure().text() + QStringLiteral(" [") +
                                 error.failure().detail + QStringLiteral("]"));
        return {nullptr, error.failure().text()};
    }
}

Session::Session(std::unique_ptr<SessionPrivate> d) : d(std::move(d)) {}

Session::~Session()
{
    uninstall();
    d->authClient.reset();
    d->userConfig.saveTableLayouts();
}

QString Session::userName() const
{
    return d->userConfig.userName;
}

GW::CAuthClient* Session::authClient() const
{
    return d->authClient.get();
}

GW::CUserConfig* Session::userConfig() const
{
    return &d->userConfig;
}

GW::CConfig* Session::config() const
{
    return &d->config;
}

GW::CTimeService* Session::timeService() const
{
    return &d->timeService;
}

void Session::install(GW::CMsgService* msgService)
{
    GW::installServices(d->authClient.get(), &d->userConfig, &d->config, msgService,
                        &d->timeService);
}

void Session::uninstall()
{
    // Another session may have taken the place.
    if (GW::getAuthClient() == d->authClient.get())
        GW::installServices(nullptr, nullptr, nullptr, nullptr, nullptr);
}

const ConnectionState* Session::connectionState() const
{
    return &d->authClient->connectionState();
}

QVector<AuditEntry> Session::auditTrail(int limit) const
{
    // A client has one connection to a server.
    if (d->options.location.isServer())
        return d->authClient->auditTrail(limit);
    try {
        if (!d->reading) {
            auto database = std::make_unique<Database>(d->options);
            database->open(Database::Creation::Forbidden, Database::Inspection::Brief);
            d->reading = std::move(database);
        }
        return AuditTrail(*d->reading, QString()).read(d->userId, limit);
    } catch (const StoreError& error) {
        utils::CLogCenter::error(error.failure().text() + QStringLiteral(" [") +
                                 error.failure().detail + QStringLiteral("]"));
        return {};
    }
}

} // namespace backend
