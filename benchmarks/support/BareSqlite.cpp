#include "benchmarks/support/BareSqlite.h"

#include "benchmarks/support/FilledStore.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtDebug>

#include <sodium.h>

#include <sqlite3.h>

namespace bench {

namespace {

// As the store sets up its own connection.
constexpr char setUp[] = "PRAGMA journal_mode = DELETE; PRAGMA synchronous = FULL; "
                         "PRAGMA foreign_keys = ON; PRAGMA secure_delete = ON;";

constexpr char insertGrant[] =
    "INSERT INTO grants (id, reference, grantor_id, grantee_id, account_id, first_day, last_day, "
    "ratio, source, state, created_at) VALUES (?, ?, 1, 2, ?, '2026-03-02', '2026-03-09', NULL, 1, "
    "2, '2026-03-02T04:00:00.000Z')";
constexpr char insertEntry[] =
    "INSERT INTO audit_trail (id, happened_at, actor_id, user_id, other_user_id, action, "
    "account_id, detail, ok, error) VALUES (?, '2026-03-02T04:00:00.000Z', 1, 1, 2, 'grant', ?, "
    "'2026-03-02 至 2026-03-09', 1, '')";

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
        unsigned char random[16];
        char reference[2 * sizeof random + 1];
        randombytes_buf(random, sizeof random);
        sodium_bin2hex(reference, sizeof reference, random, sizeof random);
        sqlite3_bind_int(grant, 1, row);
        sqlite3_bind_text(grant, 2, reference, -1, SQLITE_STATIC);
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

double bareTransactionMilliseconds(int rows)
{
    const QTemporaryDir folder;
    const QString path = makeFilledStore(folder.path(), rows).location.path;
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
