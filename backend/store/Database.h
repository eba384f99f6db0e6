#pragma once

#include "backend/store/SqlEngine.h"
#include "backend/store/Statement.h"
#include "backend/store/StoreOptions.h"

#include <QSqlQuery>

#include <memory>
#include <unordered_map>

namespace backend {

/// One connection to a store, with its prepared statements. Lives and dies in one thread. Failures
/// are thrown as StoreError unless a function says otherwise.
class Database
{
public:
    enum class Creation { Forbidden, Allowed };
    /// Whether opening looks through the whole file for damage, which takes a while.
    enum class Inspection { Brief, Whole };

    explicit Database(const StoreOptions& options);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Opens the store and brings its schema up to date, but changes nothing in a file that is
    /// damaged, of a newer schema or no store; `Creation::Allowed` makes a missing store.
    void open(Creation creation, Inspection inspection);

    const StoreOptions& options() const { return m_options; }
    /// The statement of that name in the folder sql; `name` has static storage.
    Statement statement(const char* name);
    /// Runs a statement that is used once, and returns the first column of its first row.
    QVariant execute(const QString& sql);

    /// Throws when the file at the store's place is no longer the one that was opened.
    void requireSameStore() const;
    qint64 changeMarker();
    /// "ok", or the first problem that the engine finds.
    QString check(bool thorough);
    const SqlEngine& engine() const { return *m_engine; }

private:
    QSqlQuery& prepared(const char* name);
    void connect();

    StoreOptions m_options;
    std::unique_ptr<SqlEngine> m_engine;
    QString m_connection;
    std::unordered_map<const char*, std::unique_ptr<QSqlQuery>> m_statements;
};

} // namespace backend
