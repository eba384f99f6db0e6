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

class ConnectionState;
class SessionPrivate;
struct SignInResult;

/// One signed-in user with the services that the dialog needs. GUI thread only; keep it alive
/// longer than every dialog constructed while it is installed.
class Session
{
public:
    /// Opens the store and checks the password: a tenth of a second for the password hash of an
    /// embedded store, up to ten seconds for a server that does not answer. The error text does not
    /// tell whether the name or the password was wrong. An embedded store makes the next attempt
    /// wait after repeated failures; a server is to be set up to do so.
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
    /// Lives as long as the session.
    const ConnectionState* connectionState() const;

    /// Hands the services to the dialog together with the host's message area (may be null).
    void install(GW::CMsgService* msgService);
    /// Takes them back; no dialog may exist.
    void uninstall();

    /// What the user did and what was done to him or his accounts, newest first, at most `limit`
    /// entries. With a logged reason what was read last, or nothing, when the store cannot be read.
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
