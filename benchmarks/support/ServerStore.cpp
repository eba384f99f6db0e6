#include "benchmarks/support/ServerStore.h"

#include "backend/store/PasswordHash.h"
#include "backend/store/postgresql/LoginName.h"
#include "benchmarks/support/FilledStore.h"
#include "benchmarks/support/ServerConnection.h"

#include <QtDebug>

namespace bench {

namespace {

QString nextDatabase()
{
    static int count = 0;
    return QStringLiteral("bench_%1").arg(++count);
}

} // namespace

ServerStore::ServerStore(int accounts) : m_database(nextDatabase())
{
    if (!qEnvironmentVariableIsSet("AUTHSETTING_TEST_PGDATA"))
        qFatal("no server; ./bench starts one");
    ServerConnection(superuser(QStringLiteral("postgres")))
        .run("CREATE DATABASE " + m_database.toLatin1());
    fillStore(administrator(), accounts);
    ServerConnection(administrator()).run("VACUUM ANALYZE");
}

ServerStore::~ServerStore()
{
    ServerConnection(superuser(QStringLiteral("postgres")))
        .run("DROP DATABASE " + m_database.toLatin1() + " WITH (FORCE)");
}

backend::StoreOptions ServerStore::superuser(const QString& database) const
{
    backend::StoreOptions options;
    options.location.engine = QStringLiteral("postgresql");
    options.location.host = qEnvironmentVariable("PGHOST");
    options.location.port = qEnvironmentVariableIntValue("PGPORT");
    options.location.user = qEnvironmentVariable("PGUSER");
    options.location.database = database;
    options.credential = qEnvironmentVariable("PGPASSWORD");
    options.dataFolder = m_folder.path();
    return options;
}

backend::StoreOptions ServerStore::administrator() const
{
    return superuser(m_database);
}

backend::StoreOptions ServerStore::client() const
{
    backend::StoreOptions options = superuser(m_database);
    options.location.user.clear();
    options.credential.clear();
    return options;
}

backend::StoreOptions ServerStore::login(const QString& user) const
{
    backend::StoreOptions options = superuser(m_database);
    options.location.user = backend::loginName(user);
    options.credential = backend::passwordDigest(QStringLiteral("password"));
    return options;
}

} // namespace bench
