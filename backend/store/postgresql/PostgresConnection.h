#pragma once

#include "backend/store/postgresql/ConnectionWatchdog.h"
#include "backend/store/postgresql/ServerAddress.h"

#include <QString>
#include <QVariant>

#include <chrono>
#include <functional>
#include <memory>

class QSocketNotifier;
class QSqlQuery;
struct pg_conn;

namespace backend {

/// One connection to a server, through which functions of the store are called. No call takes
/// longer than the time it is given. Lives and dies in one thread; failures are thrown as
/// PostgresError, and one that cost the connection leaves it closed.
class PostgresConnection
{
public:
    explicit PostgresConnection(const StoreOptions& options);
    ~PostgresConnection();
    PostgresConnection(const PostgresConnection&) = delete;
    PostgresConnection& operator=(const PostgresConnection&) = delete;

    void open();
    void close();
    bool isOpen() const { return m_isOpen; }

    using OnRow = std::function<void(const QSqlQuery& row)>;
    /// Runs `sql` with `values` in the place of its question marks, and hands out each row once all
    /// of it is done and committed.
    void call(const QString& sql, const QVariantList& values, std::chrono::milliseconds time,
              const OnRow& onRow = {});

    /// Lets the server tell of changes: `onNotice` is called, from the event loop or at the end of
    /// a call, when others have sent notices on `channel`, and from the event loop when the
    /// connection is found to be gone.
    void listen(const QString& channel, std::function<void()> onNotice);

    /// What the server keeps of a password in the place of it: a salted SCRAM-SHA-256 verifier.
    QString verifier(const QString& user, const QString& password) const;

private:
    pg_conn* handle() const;
    void onReadable();
    bool takeNotices();
    void dropIfLost();

    ServerAddress m_address;
    QString m_name;
    bool m_isOpen = false;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::function<void()> m_onNotice;
    ConnectionWatchdog m_watchdog;
};

} // namespace backend
