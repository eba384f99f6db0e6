#pragma once

#include "backend/store/StoreOptions.h"

#include <QDateTime>
#include <QString>
#include <QVariant>

/// A database of its own on the server that tests/postgresql/with-postgresql.sh runs around the
/// test, with the schema in it and no users yet. It goes, with its users' logins, when the fixture
/// does; one at a time.
class ServerFixture
{
public:
    ServerFixture();
    ~ServerFixture();
    ServerFixture(const ServerFixture&) = delete;
    ServerFixture& operator=(const ServerFixture&) = delete;

    /// Whether the tests are to run against a server.
    static bool isWanted();

    backend::StoreLocation location() const;
    /// The same as text for a command line.
    QString url() const;
    /// `options` with the rights of the server's superuser.
    backend::StoreOptions asAdministrator(backend::StoreOptions options) const;

    /// Stops the server's clock at that time.
    void setNow(const QDateTime& now) const;
    /// First column of the first row, as the superuser.
    QVariant value(const QString& sql) const;

private:
    QString m_database;
};
