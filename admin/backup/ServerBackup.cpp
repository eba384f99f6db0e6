#include "admin/backup/ServerBackup.h"

#include "admin/backup/BackupScript.h"
#include "admin/backup/StagedFile.h"
#include "backend/store/postgresql/PostgresConnection.h"
#include "backend/store/postgresql/PostgresError.h"

#include <QFile>
#include <QProcess>
#include <QSqlQuery>

#include <chrono>
#include <utility>

namespace admin {

namespace {

using namespace std::chrono_literals;

// Each text is one statement that makes a role as it is, in the order in which roles build on each
// other. Roles belong to the server, so that those of the groups may be there already.
constexpr QStringView rolesSql = uR"(
WITH named AS (
    SELECT r.*, r.rolname LIKE 'authsetting\_%' AS is_group
    FROM pg_catalog.pg_authid r
    WHERE r.rolname IN ('authsetting_owner', 'authsetting_user', 'authsetting_accounts_manager')
       OR r.rolname IN (SELECT u.login FROM authsetting.users u)
), statements AS (
    SELECT 1 AS step, n.rolname AS name,
           CASE WHEN n.is_group
           THEN format('DO $$BEGIN IF NOT EXISTS (SELECT FROM pg_catalog.pg_roles WHERE rolname = %L)'
                       ' THEN CREATE ROLE %I; END IF; END$$', n.rolname, n.rolname)
           ELSE format('CREATE ROLE %I', n.rolname) END AS sql
    FROM named n
    UNION ALL
    SELECT 2, n.rolname,
           format('ALTER ROLE %I WITH %s %s %s %s %s NOREPLICATION NOBYPASSRLS CONNECTION LIMIT %s',
                  n.rolname, 'NOSUPERUSER',
                  CASE WHEN n.rolinherit THEN 'INHERIT' ELSE 'NOINHERIT' END,
                  CASE WHEN n.rolcreaterole THEN 'CREATEROLE' ELSE 'NOCREATEROLE' END,
                  'NOCREATEDB', CASE WHEN n.rolcanlogin THEN 'LOGIN' ELSE 'NOLOGIN' END,
                  n.rolconnlimit)
           || CASE WHEN n.rolpassword IS NULL THEN '' ELSE format(' PASSWORD %L', n.rolpassword) END
    FROM named n
    UNION ALL
    SELECT 3, m.rolname, format('GRANT %I TO %I%s', g.rolname, m.rolname,
                                CASE WHEN a.admin_option THEN ' WITH ADMIN OPTION' ELSE '' END)
    FROM pg_catalog.pg_auth_members a
    JOIN named m ON m.oid = a.member
    JOIN pg_catalog.pg_roles g ON g.oid = a.roleid
    UNION ALL
    SELECT 4, n.rolname, format('ALTER ROLE %I SET %s TO %L', n.rolname,
                                split_part(c.setting, '=', 1),
                                substr(c.setting, strpos(c.setting, '=') + 1))
    FROM named n
    JOIN pg_catalog.pg_db_role_setting s ON s.setrole = n.oid AND s.setdatabase = 0
    CROSS JOIN LATERAL unnest(s.setconfig) AS c (setting)
)
SELECT sql FROM statements ORDER BY step, name, sql
)";

// Rights on the database itself are no part of a dump.
constexpr QStringView databaseRights =
    u"DO $$BEGIN EXECUTE format('REVOKE ALL ON DATABASE %I FROM PUBLIC', current_database()); "
    u"EXECUTE format('GRANT CONNECT ON DATABASE %I TO authsetting_user', current_database()); "
    u"END$$";

constexpr QStringView emptySql = uR"(
SELECT count(*) FROM (
    SELECT n.oid FROM pg_catalog.pg_namespace n
    WHERE n.nspname !~ '^pg_' AND n.nspname NOT IN ('information_schema', 'public')
    UNION ALL
    SELECT c.oid FROM pg_catalog.pg_class c
    JOIN pg_catalog.pg_namespace n ON n.oid = c.relnamespace
    WHERE n.nspname = 'public'
) AS found
)";

QString reason(const backend::StoreError& error)
{
    return QStringLiteral("%1（%2）").arg(error.failure().text(), error.failure().detail);
}

// Runs a program of the server's and gives what it said against it; empty when it went well.
QString runProgram(QProcess& process, const QString& program, const QStringList& arguments)
{
    process.start(program, arguments, QIODevice::ReadWrite);
    process.closeWriteChannel();
    if (!process.waitForStarted(-1))
        return QStringLiteral("无法运行 %1；请安装 postgresql-client").arg(program);
    process.waitForFinished(-1);
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return {};
    const QString said = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
    return QStringLiteral("%1 失败：%2").arg(program, said);
}

} // namespace

ServerBackup::ServerBackup(backend::StoreOptions store) : m_store(std::move(store)) {}

QProcessEnvironment ServerBackup::environment() const
{
    const QHash<QByteArray, QString> variables{{"host", QStringLiteral("PGHOST")},
                                               {"port", QStringLiteral("PGPORT")},
                                               {"dbname", QStringLiteral("PGDATABASE")},
                                               {"user", QStringLiteral("PGUSER")},
                                               {"password", QStringLiteral("PGPASSWORD")},
                                               {"sslmode", QStringLiteral("PGSSLMODE")},
                                               {"sslrootcert", QStringLiteral("PGSSLROOTCERT")}};
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const auto parameters = backend::ServerAddress(m_store).parameters();
    for (const auto& [name, value] : parameters) {
        if (variables.contains(name))
            environment.insert(variables.value(name), QString::fromUtf8(value));
    }
    return environment;
}

QString ServerBackup::dump(const QString& path, const QString& snapshot) const
{
    QProcess process;
    process.setProcessEnvironment(environment());
    process.setStandardOutputFile(path, QIODevice::Append);
    return runProgram(process, QStringLiteral("pg_dump"),
                      {QStringLiteral("--no-password"), QStringLiteral("--encoding=UTF8"),
                       QStringLiteral("--lock-wait-timeout=30s"),
                       QStringLiteral("--snapshot=") + snapshot});
}

QString ServerBackup::write(const QString& path) const
{
    try {
        backend::PostgresConnection connection(m_store);
        connection.open();
        // Logins and tables as of the same moment.
        connection.call(QStringLiteral("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY"), {}, 60s);
        QString snapshot;
        connection.call(QStringLiteral("SELECT pg_export_snapshot()"), {}, 60s,
                        [&](const QSqlQuery& row) { snapshot = row.value(0).toString(); });
        QStringList statements;
        connection.call(rolesSql.toString(), {}, 60s,
                        [&](const QSqlQuery& row) { statements.append(row.value(0).toString()); });
        statements.append(databaseRights.toString());
        QString problem = BackupScript::begin(path, statements);
        if (problem.isEmpty())
            problem = dump(path, snapshot);
        return problem.isEmpty() ? BackupScript::seal(path) : problem;
    } catch (const backend::StoreError& error) {
        return reason(error);
    }
}

QString ServerBackup::save(const QString& file) const
{
    StagedFile staged(file);
    QString problem = staged.create();
    if (problem.isEmpty())
        problem = write(staged.path());
    return problem.isEmpty() ? staged.publish() : problem;
}

QString ServerBackup::requireEmptyTarget(const QStringList& logins) const
{
    try {
        backend::PostgresConnection connection(m_store);
        connection.open();
        int found = 0;
        connection.call(emptySql.toString(), {}, 60s,
                        [&](const QSqlQuery& row) { found = row.value(0).toInt(); });
        if (found > 0)
            return QStringLiteral("目标数据库不是空的，不会覆盖");
        QString existing;
        connection.call(
            QStringLiteral("SELECT rolname FROM pg_catalog.pg_roles WHERE rolname LIKE 'as\\_%'"),
            {}, 60s, [&](const QSqlQuery& row) {
                if (logins.contains(row.value(0).toString()))
                    existing = row.value(0).toString();
            });
        if (!existing.isEmpty())
            return QStringLiteral("服务器上已有登录 %1，不会覆盖").arg(existing);
    } catch (const backend::StoreError& error) {
        return reason(error);
    }
    return {};
}

QString ServerBackup::restore(const QString& file) const
{
    QStringList logins;
    QString problem = BackupScript::check(file, &logins);
    if (problem.isEmpty())
        problem = requireEmptyTarget(logins);
    if (!problem.isEmpty())
        return problem;
    QProcess process;
    process.setProcessEnvironment(environment());
    process.setStandardOutputFile(QProcess::nullDevice());
    return runProgram(process, QStringLiteral("psql"),
                      {QStringLiteral("--no-password"), QStringLiteral("--no-psqlrc"),
                       QStringLiteral("--quiet"), QStringLiteral("--single-transaction"),
                       QStringLiteral("--set=ON_ERROR_STOP=1"), QStringLiteral("--file"), file});
}

} // namespace admin
