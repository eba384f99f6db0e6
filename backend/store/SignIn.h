#pragma once

#include <QString>

namespace backend {

class Database;

/// Checks a name and a password digest against the store and writes the attempt into the audit
/// trail. Failures of the engine are thrown as StoreError.
class SignIn
{
public:
    struct Result
    {
        /// 0 = refused.
        qint64 userId = 0;
        /// The name as the store has it.
        QString userName;
        /// The reason of a refusal, in Chinese; the same for a wrong name and a wrong password.
        QString error;
    };

    explicit SignIn(Database& database) : m_database(database) {}

    Result attempt(const QString& name, const QString& digest);

private:
    int reserveAttempt(const QString& name);
    void record(const QString& name, qint64 userId, bool passwordRight, const QString& error);

    Database& m_database;
};

} // namespace backend
