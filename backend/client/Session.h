#pragma once

#include "backend/store/AuditEntry.h"
#include "backend/store/StoreOptions.h"

#include <QString>
#include <QVector>

#include <memory>

namespace GW {
class CAuthClient;
class CConfig;
class CMsgService;
class CTimeService;
class CUserConfig;
} // namespace GW

namespace backend {

class SessionPrivate;
struct SignInResult;

/// One signed-in user with the services that the dialog needs. GUI thread only; keep it alive
/// longer than every dialog constructed while it is installed.
class Session
{
public:
    /// Opens the store and checks the password (a tenth of a second, for the password hash). The
    /// error text does not tell whether the name or the password was wrong, and repeated failures
    /// make the next attempt wait.
    static SignInResult signIn(const StoreOptions& options, const QString& user,
                               const QString& password);
    /// Uninstalls the services, finishes the requests under way and saves the user configuration.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    QString userName() const;
    GW::CAuthClient* authClient() const;
    GW::CUserConfig* userConfig() const;
    GW::CConfig* config() const;
    GW::CTimeService* timeService() const;

    /// Hands the services to the dialog together with the host's message area (may be null).
    void install(GW::CMsgService* msgService);
    /// Takes them back; no dialog may exist.
    void uninstall();

    /// What the user did and what was done to him or his accounts, newest first, at most `limit`
    /// entries. Empty with a logged reason when the store cannot be read.
    QVector<AuditEntry> auditTrail(int limit) const;

private:
    explicit Session(std::unique_ptr<SessionPrivate> d);
    std::unique_ptr<SessionPrivate> d;
};

/// Outcome of Session::signIn(): a session, or the reason in Chinese.
struct SignInResult
{
    std::unique_ptr<Session> session;
    QString error;
};

} // namespace backend
