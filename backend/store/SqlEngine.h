#pragma once

#include "backend/store/StoreFailure.h"
#include "backend/store/StoreOptions.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QString>
#include <QStringList>

#include <memory>

namespace backend {

/// What differs between database engines; everything else is plain SQL. One object per connection,
/// used in the connection's thread.
class SqlEngine
{
public:
    virtual ~SqlEngine();

    /// The engine for a location; null when this build has none for it.
    static std::unique_ptr<SqlEngine> create(const StoreOptions& options);

    /// Name of the Qt driver.
    virtual QString driver() const = 0;
    /// Makes sure that there is something to open, making it (empty) when `createMissing`.
    virtual StoreFailure prepare(bool createMissing) = 0;
    virtual void configure(QSqlDatabase& database) const = 0;
    /// Statements run once the schema is known to be ours.
    virtual QStringList sessionSetup() const = 0;
    /// Tells an empty database from one that holds something, by the number in its first row.
    virtual QString countTablesSql() const = 0;
    /// Begins a transaction that is going to write, so that it waits for its turn at once.
    virtual QString beginWriteSql() const = 0;
    /// A number that is different once another connection has changed something.
    virtual QString changeMarkerSql() const = 0;
    /// Its only row is "ok" in a sound database.
    virtual QString checkSql(bool thorough) const = 0;
    /// Ending of the migration files that hold this engine's own statements.
    virtual QString migrationSuffix() const = 0;
    virtual StoreFailure::Kind classify(const QSqlError& error) const = 0;
    /// Notes what was opened, after the connection was made.
    virtual void rememberIdentity() = 0;
    /// Whether that is still what other processes open.
    virtual bool isSameStore() const = 0;
};

} // namespace backend
