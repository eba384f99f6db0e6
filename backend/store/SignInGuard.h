#pragma once

#include <QDateTime>
#include <QString>

namespace backend {

class Database;

/// Slows guessing down: counts the failed sign-ins of a name, known or not, and tells how long the
/// next one has to wait. Failures are thrown as StoreError; the caller holds a writing transaction.
class SignInGuard
{
public:
    /// Attempts that fail without any wait.
    static constexpr int freeFailures = 5;
    /// The wait after that many failures; it doubles with each further one.
    static constexpr int firstWaitSeconds = 5;
    static constexpr int longestWaitSeconds = 300;

    explicit SignInGuard(Database& database) : m_database(database) {}

    /// Seconds until `name` may be tried; 0 when it may be tried now.
    int wait(const QString& name, const QDateTime& now);
    /// Counts an attempt as failed, before its password is looked at, so that attempts at the same
    /// moment do not share one count.
    void count(const QString& name, const QDateTime& now);
    void forget(const QString& name);

private:
    Database& m_database;
};

} // namespace backend
