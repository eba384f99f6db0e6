#include "backend/client/Session.h"

#include "authsetting/services/Services.h"
#include "backend/client/AuthClient.h"
#include "backend/config/Config.h"
#include "backend/config/TimeService.h"
#include "backend/config/UserConfig.h"
#include "backend/store/AuditTrail.h"
#include "backend/store/Database.h"
#include "backend/store/Environment.h"
#include "backend/store/PasswordHash.h"
#include "backend/store/SignIn.h"
#include "backend/store/StoreError.h"
#include "utils/LogCenter.h"

#include <QFileInfo>

namespace backend {

namespace {

SystemTimeService::MillisecondClock millisecondClock(const StoreOptions& options)
{
    if (!options.clock)
        return {};
    return [clock = options.clock] { return clock().toMSecsSinceEpoch(); };
}

} // namespace

class SessionPrivate
{
public:
    SessionPrivate(const StoreOptions& options, const SignIn::Result& user)
        : userId(user.userId), options(options),
          userConfig(user.userName, QFileInfo(options.location.path).absolutePath()),
          timeService(millisecondClock(options)),
          authClient(std::make_unique<AuthClient>(options, user.userId, user.userName, userConfig))
    {
    }

    void setEnvironment(const Environment& environment)
    {
        config.setPlatforms(environment.futuresPlatforms, environment.stockPlatforms);
        userConfig.setBrokers(environment.futuresBrokers, environment.stockBrokers);
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
    try {
        Database database(options);
        database.open(Database::Creation::Forbidden, Database::Inspection::Whole);
        const SignIn::Result result = SignIn(database).attempt(user, passwordDigest(password));
        if (result.userId == 0)
            return {nullptr, result.error};
        auto d = std::make_unique<SessionPrivate>(options, result);
        d->setEnvironment(Environment::read(database));
        const QString problem = d->authClient->start();
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

QVector<AuditEntry> Session::auditTrail(int limit) const
{
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
