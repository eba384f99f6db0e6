#include "tests/backend/ServerFixture.h"

#include "backend/store/StoreAdmin.h"
#include "backend/store/postgresql/PostgresConnection.h"
#include "backend/store/postgresql/PostgresError.h"

#include <QCoreApplication>
#include <QSqlQuery>

using backend::StoreLocation;
using backend::StoreOptions;

namespace {

QString variable(const char* name)
{
    return qEnvironmentVariable(name);
}

StoreOptions superuser(const QString& database)
{
    StoreOptions options;
    options.location.engine = QStringLiteral("postgresql");
    options.location.host = variable("PGHOST");
    options.location.port = variable("PGPORT").toInt();
    options.location.user = variable("PGUSER");
    options.location.database = database;
    options.credential = variable("PGPASSWORD");
    return options;
}

QVariant run(const QString& database, const QString& sql)
{
    using namespace std::chrono_literals;
    QVariant first;
    try {
        backend::PostgresConnection connection(superuser(database));
        connection.open();
        connection.call(sql, {}, 60s, [&](const QSqlQuery& row) {
            if (!first.isValid())
                first = row.value(0);
        });
    } catch (const backend::PostgresError& error) {
        qFatal("%s: %s", qPrintable(sql), qPrintable(error.failure().detail));
    }
    return first;
}

constexpr QLatin1String templateName("authsetting_template");

// Copying a database is several times faster than making its schema.
void makeTemplate()
{
    static bool made = false;
    if (std::exchange(made, true))
        return;
    run(variable("PGDATABASE"), QStringLiteral("CREATE DATABASE ") + templateName);
    QString error;
    if (!backend::StoreAdmin::open(superuser(templateName), &error))
        qFatal("The schema cannot be made: %s", qPrintable(error));
}

} // namespace

bool ServerFixture::isWanted()
{
    return variable("AUTHSETTING_TEST_ENGINE") == QStringLiteral("postgresql");
}

ServerFixture::ServerFixture()
{
    static int count = 0;
    makeTemplate();
    m_database = QStringLiteral("test_%1").arg(++count);
    const QString home = variable("PGDATABASE");
    run(home, QStringLiteral("CREATE DATABASE %1 TEMPLATE %2").arg(m_database, templateName));
    run(home, QStringLiteral("REVOKE ALL ON DATABASE %1 FROM PUBLIC").arg(m_database));
    run(home, QStringLiteral("GRANT CONNECT ON DATABASE %1 TO authsetting_user").arg(m_database));
}

ServerFixture::~ServerFixture()
{
    const QString home = variable("PGDATABASE");
    run(home, QStringLiteral("DROP DATABASE %1 WITH (FORCE)").arg(m_database));
    run(home, QStringLiteral("DO $$ DECLARE login text; BEGIN"
                             " FOR login IN SELECT rolname FROM pg_roles WHERE rolname ~ '^as_'"
                             " LOOP EXECUTE format('DROP ROLE %I', login); END LOOP; END $$"));
}

StoreLocation ServerFixture::location() const
{
    StoreLocation location = superuser(m_database).location;
    location.user.clear();
    return location;
}

QString ServerFixture::url() const
{
    return QStringLiteral("postgresql://%1:%2/%3")
        .arg(variable("PGHOST"), variable("PGPORT"), m_database);
}

StoreOptions ServerFixture::asAdministrator(StoreOptions options) const
{
    const StoreOptions administrator = superuser(m_database);
    options.location = administrator.location;
    options.credential = administrator.credential;
    return options;
}

void ServerFixture::setNow(const QDateTime& now) const
{
    run(m_database, QStringLiteral("UPDATE authsetting.settings SET test_now = '%1'")
                        .arg(now.toUTC().toString(Qt::ISODateWithMs)));
}

QVariant ServerFixture::value(const QString& sql) const
{
    return run(m_database, sql);
}
