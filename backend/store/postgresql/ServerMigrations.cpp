#include "backend/store/postgresql/ServerMigrations.h"

#include "backend/store/postgresql/PostgresError.h"
#include "backend/store/postgresql/ServerProbe.h"

#include <QDir>
#include <QFile>

#include <libpq-fe.h>
#include <memory>

// Resources of a static library are only there once asked for, outside of any namespace.
static void initPostgresqlSql()
{
    Q_INIT_RESOURCE(postgresql_sql);
}

namespace backend {

namespace {

using Connection = std::unique_ptr<PGconn, decltype(&PQfinish)>;
using Result = std::unique_ptr<PGresult, decltype(&PQclear)>;

QStringList migrationFiles()
{
    initPostgresqlSql();
    const QDir folder(QStringLiteral(":/authsetting/store/postgresql"));
    return folder.entryList({QStringLiteral("*.sql")}, QDir::Files, QDir::Name);
}

QByteArray migrationText(const QString& file)
{
    QFile text(QStringLiteral(":/authsetting/store/postgresql/") + file);
    return text.open(QIODevice::ReadOnly) ? text.readAll() : QByteArray();
}

Connection connected(const ServerAddress& address)
{
    const auto parameters = address.parameters();
    QVector<const char*> names;
    QVector<const char*> values;
    for (const auto& [name, value] : parameters) {
        names.append(name.constData());
        values.append(value.constData());
    }
    names.append(nullptr);
    values.append(nullptr);
    Connection connection(PQconnectdbParams(names.constData(), values.constData(), 0), &PQfinish);
    if (PQstatus(connection.get()) != CONNECTION_OK) {
        const ServerRefusal refusal = refusalOf(address);
        throw PostgresError({refusal.kind == StoreFailure::Kind::Offline
                                 ? StoreFailure::Kind::Unreachable
                                 : refusal.kind,
                             QString::fromUtf8(PQerrorMessage(connection.get())).simplified()},
                            refusal.sqlState);
    }
    return connection;
}

// Runs one or more statements, and returns the first value of the last one's rows.
QString run(PGconn* connection, const QByteArray& sql)
{
    const Result result(PQexec(connection, sql.constData()), &PQclear);
    const ExecStatusType status = PQresultStatus(result.get());
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK) {
        const QString code =
            QString::fromLatin1(PQresultErrorField(result.get(), PG_DIAG_SQLSTATE));
        throw PostgresError(
            {code.isEmpty() ? StoreFailure::Kind::Offline : PostgresError::kindOf(code),
             QString::fromUtf8(PQerrorMessage(connection)).simplified()},
            code);
    }
    return PQntuples(result.get()) > 0 ? QString::fromUtf8(PQgetvalue(result.get(), 0, 0))
                                       : QString();
}

bool hasSchema(PGconn* connection)
{
    return !run(connection, "SELECT to_regclass('authsetting.schema_version')").isEmpty();
}

int readVersion(PGconn* connection)
{
    return hasSchema(connection)
               ? run(connection, "SELECT version FROM authsetting.schema_version").toInt()
               : 0;
}

// Two administrators take turns, by a lock that no other login can hold once there are any.
void takeTurn(PGconn* connection)
{
    run(connection, hasSchema(connection)
                        ? "LOCK TABLE authsetting.schema_version IN EXCLUSIVE MODE"
                        : "SELECT pg_advisory_xact_lock(hashtext('authsetting migrations'))");
}

void ignoreNotice(void*, const PGresult*) {}

} // namespace

int ServerMigrations::currentVersion()
{
    return static_cast<int>(migrationFiles().size());
}

void ServerMigrations::apply() const
{
    const Connection connection = connected(m_address);
    PQsetNoticeReceiver(connection.get(), ignoreNotice, nullptr);
    const QStringList files = migrationFiles();
    // Before any lock, so that nobody who holds one keeps an up-to-date store from being opened.
    if (readVersion(connection.get()) == files.size())
        return;
    // Destroying the connection rolls back what was not committed.
    run(connection.get(), "BEGIN");
    takeTurn(connection.get());
    const int version = readVersion(connection.get());
    if (version > files.size())
        throw PostgresError({StoreFailure::Kind::NewerSchema, QString::number(version)}, {});
    if (version == files.size())
        return;
    for (qsizetype next = version; next < files.size(); ++next)
        run(connection.get(), migrationText(files[next]));
    run(connection.get(),
        "UPDATE authsetting.schema_version SET version = " + QByteArray::number(files.size()));
    run(connection.get(), "COMMIT");
}

} // namespace backend
