#pragma once

#include "backend/store/StoreOptions.h"

#include <QString>
#include <QTemporaryDir>

namespace bench {

/// A filled database of its own on the server that tests/postgresql/with-postgresql.sh has started;
/// goes with the object.
class ServerStore
{
public:
    explicit ServerStore(int accounts);
    ~ServerStore();
    ServerStore(const ServerStore&) = delete;
    ServerStore& operator=(const ServerStore&) = delete;

    /// As the server's superuser.
    backend::StoreOptions administrator() const;
    /// For signing in.
    backend::StoreOptions client() const;
    /// As the login of that user, for a bare connection.
    backend::StoreOptions login(const QString& user) const;

private:
    backend::StoreOptions superuser(const QString& database) const;

    QTemporaryDir m_folder;
    QString m_database;
};

} // namespace bench
