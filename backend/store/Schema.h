#pragma once

namespace backend {

class Database;

/// The version of the tables in a store and the way from one version to the next. Failures are
/// thrown as StoreError.
class Schema
{
public:
    /// The version that this program works with.
    static constexpr int currentVersion = 2;

    explicit Schema(Database& database) : m_database(database) {}

    /// Only reads: throws unless the store is of a version that this program knows; an empty one
    /// counts as usable when `emptyAllowed`.
    void requireUsable(bool emptyAllowed);
    /// Only reads: throws when the engine finds damage.
    void requireSound();
    /// Brings the tables to `version` in one transaction, from any older version or from nothing.
    void migrate(int version = currentVersion);

private:
    int version();
    void apply(int version);

    Database& m_database;
};

} // namespace backend
