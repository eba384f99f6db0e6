#pragma once

#include "backend/store/postgresql/ServerAddress.h"

namespace backend {

/// Brings the roles, tables and functions in a server's database up to date: each numbered file of
/// the folder sql is one version. Failures are thrown as PostgresError. Any thread.
class ServerMigrations
{
public:
    /// `address` has to be that of a superuser.
    explicit ServerMigrations(const ServerAddress& address) : m_address(address) {}

    /// Runs what is missing, from nothing if need be, in one transaction.
    void apply() const;
    /// The version that apply() leads to.
    static int currentVersion();

private:
    ServerAddress m_address;
};

} // namespace backend
