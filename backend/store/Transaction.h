#pragma once

namespace backend {

class Database;

/// A transaction; rolled back when it goes out of scope uncommitted. Failures to begin or commit
/// are thrown as StoreError.
class Transaction
{
public:
    enum class Mode { Read, Write };

    Transaction(Database& database, Mode mode);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// When it throws, nothing of the transaction is in the store.
    void commit();

private:
    void rollback() noexcept;

    Database& m_database;
    bool m_open = true;
};

} // namespace backend
