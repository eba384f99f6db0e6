#pragma once

#include "backend/store/postgresql/PostgresConnection.h"
#include "backend/store/postgresql/PostgresError.h"

#include <QElapsedTimer>

#include <functional>
#include <future>

namespace backend {

/// A connection that is made again when it breaks: within a request, which then finds the result
/// of its first attempt under its identifier, and with growing pauses while the server is away.
/// One thread; failures are thrown as PostgresError.
class ServerLink
{
public:
    explicit ServerLink(const StoreOptions& options);
    ~ServerLink();

    /// Connects for the first time and listens for changes; `onNotice` is called from the event
    /// loop when somebody changed something and when the connection is found to be gone.
    void open(std::function<void()> onNotice);

    /// Whether requests may be sent; turns false when a call finds the server gone.
    bool isOnline() const { return m_isOnline; }
    /// What the server, which is there, has against the last attempt to come back; else None.
    StoreFailure::Kind refusal() const { return m_refusal; }

    /// Runs a call that may be run twice. Server away: fails at once.
    void call(const QString& sql, const QVariantList& values,
              const PostgresConnection::OnRow& onRow = {});
    /// A single attempt with little time, for looking whether anything changed.
    void look(const QString& sql, const QVariantList& values,
              const PostgresConnection::OnRow& onRow = {});
    /// While the server is away: tries to find it again when it is time for that, without waiting
    /// for it. True when it is back.
    bool tryReturn();

    PostgresConnection& connection() { return *m_connection; }

private:
    void connect();
    void goOffline(const PostgresError& error);
    void waitForNextTry(std::chrono::milliseconds time);

    StoreOptions m_options;
    std::unique_ptr<PostgresConnection> m_connection;
    std::function<void()> m_onNotice;
    bool m_isOnline = false;
    StoreFailure::Kind m_refusal = StoreFailure::Kind::None;
    /// Whether the server answers, asked in a thread of its own because the answer can take long.
    std::future<bool> m_probe;
    QElapsedTimer m_sinceTry;
    std::chrono::milliseconds m_pause{0};
};

} // namespace backend
