#include "benchmarks/support/BareSqlite.h"

#include <QElapsedTimer>
#include <QFile>
#include <QtDebug>

#include <sqlite3.h>
#include <string>

namespace bench {

namespace {

constexpr char setUp[] = R"sql(
PRAGMA journal_mode = DELETE;
PRAGMA synchronous = FULL;
PRAGMA secure_delete = ON;
CREATE TABLE grants (
    id INTEGER NOT NULL PRIMARY KEY, reference CHAR(32) NOT NULL UNIQUE,
    grantor_id INTEGER NOT NULL, grantee_id INTEGER NOT NULL, account_id INTEGER NOT NULL,
    first_day DATE NOT NULL, last_day DATE NOT NULL, ratio DOUBLE PRECISION,
    source SMALLINT NOT NULL, state SMALLINT NOT NULL, created_at TIMESTAMP NOT NULL,
    ended_at TIMESTAMP, redeemed_at TIMESTAMP);
CREATE UNIQUE INDEX grants_current ON grants (account_id) WHERE state = 2;
CREATE UNIQUE INDEX grants_prepared ON grants (account_id) WHERE state = 1;
CREATE INDEX grants_received ON grants (grantee_id) WHERE state = 2;
CREATE TABLE audit_trail (
    id INTEGER NOT NULL PRIMARY KEY, happened_at TIMESTAMP NOT NULL, actor_id INTEGER,
    user_id INTEGER, other_user_id INTEGER, action VARCHAR(32) NOT NULL, account_id INTEGER,
    detail VARCHAR(255) NOT NULL, ok BOOLEAN NOT NULL, error VARCHAR(255) NOT NULL);
)sql";

constexpr char insertGrant[] =
    "INSERT INTO grants (id, reference, grantor_id, grantee_id, account_id, first_day, last_day, "
    "ratio, source, state, created_at) VALUES (?, ?, 1, 2, ?, '2026-03-02', '2026-03-09', NULL, 1, "
    "2, '2026-03-02T04:00:00.000Z')";
constexpr char insertEntry[] =
    "INSERT INTO audit_trail (id, happened_at, actor_id, user_id, other_user_id, action, "
    "account_id, detail, ok, error) VALUES (?, '2026-03-02T04:00:00.000Z', 1, 1, 2, 'grant', ?, "
    "'2026-03-02 2026-03-09', 1, '')";

void check(int code, sqlite3* database)
{
    if (code != SQLITE_OK && code != SQLITE_DONE)
        qFatal("sqlite: %s", sqlite3_errmsg(database));
}

void writeRows(sqlite3* database, int rows)
{
    sqlite3_stmt* grant = nullptr;
    sqlite3_stmt* entry = nullptr;
    check(sqlite3_prepare_v2(database, insertGrant, -1, &grant, nullptr), database);
    check(sqlite3_prepare_v2(database, insertEntry, -1, &entry, nullptr), database);
    for (int row = 1; row <= rows; ++row) {
        std::string reference = std::to_string(row * 2654435761u);
        reference.resize(32, 'f');
        sqlite3_bind_int(grant, 1, row);
        sqlite3_bind_text(grant, 2, reference.c_str(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_int(grant, 3, row);
        check(sqlite3_step(grant), database);
        check(sqlite3_reset(grant), database);
        sqlite3_bind_int(entry, 1, row);
        sqlite3_bind_int(entry, 2, row);
        check(sqlite3_step(entry), database);
        check(sqlite3_reset(entry), database);
    }
    sqlite3_finalize(grant);
    sqlite3_finalize(entry);
}

} // namespace

double bareTransactionMilliseconds(const QString& folder, int rows)
{
    const QString path = folder + QStringLiteral("/bare.db");
    QFile::remove(path);
    sqlite3* database = nullptr;
    check(sqlite3_open(QFile::encodeName(path).constData(), &database), database);
    check(sqlite3_exec(database, setUp, nullptr, nullptr, nullptr), database);
    QElapsedTimer timer;
    timer.start();
    check(sqlite3_exec(database, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), database);
    writeRows(database, rows);
    check(sqlite3_exec(database, "COMMIT", nullptr, nullptr, nullptr), database);
    const double milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    sqlite3_close(database);
    return milliseconds;
}

} // namespace bench
