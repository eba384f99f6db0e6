#pragma once

#include "authsetting/services/AuthLimit.h"
#include "backend/client/Session.h"
#include "backend/store/StoreAdmin.h"
#include "backend/store/StoreOptions.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// A database of its own on the server that tests/postgresql/with-postgresql.sh has started, whose
/// clock stands at 2024-03-15 10:00 in Shanghai. alice owns so many accounts and manages dora; bob
/// owns none. Everybody's password is "pw-" and the name.
class DesksFixture
{
public:
    DesksFixture();
    ~DesksFixture();

    /// False with a warning on failure.
    bool fill(int accounts);
    /// The store in the hands of the server's superuser.
    std::unique_ptr<backend::StoreAdmin> admin() const;
    /// How to open it as an administrator.
    backend::StoreOptions adminOptions() const;
    /// How clients find it; through a proxy when they are to use its port.
    backend::StoreOptions options(quint16 port = 0) const;
    QString url(quint16 port = 0) const;
    std::unique_ptr<backend::Session> signIn(const QString& user, quint16 port = 0) const;

    /// Ends the server as it ends when its machine is switched off, and starts it again.
    bool restartServer() const;
    bool stopServer() const;
    bool startServer() const;
    /// Lets the server read its settings again; they hold for whoever connects afterwards.
    bool reloadServer() const;
    static quint16 serverPort();

    /// Runs `sql` as the superuser; its rows, with | between the columns.
    QStringList query(const QString& sql) const;
    /// What the audit trail and the grants say of each other, empty when they agree.
    QStringList contradictions() const;

    static mbservice::CAccountInfo account(int number);
    /// From the clock's day on, for a week.
    static GW::CAuthLimit week();
    /// Asks for a grant of that account for a week on the server; the tag is the number.
    static void grant(const backend::Session& session, int number, const QString& grantee);

private:
    QString m_database;
    QTemporaryDir m_folder;
};
