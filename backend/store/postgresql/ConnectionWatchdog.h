#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace backend {

/// Ends a call to the server that takes too long, by shutting its socket down from another thread;
/// the call then fails as if the server had gone. Needed because a network that swallows traffic
/// keeps the kernel's own timers quiet. Belongs to the connection's thread.
class ConnectionWatchdog
{
public:
    /// As long as it lives, the call under way has to end within its time.
    class Guard
    {
    public:
        Guard(ConnectionWatchdog& watchdog, std::chrono::milliseconds time);
        ~Guard();
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;

    private:
        ConnectionWatchdog& m_watchdog;
    };

    ConnectionWatchdog();
    ~ConnectionWatchdog();
    ConnectionWatchdog(const ConnectionWatchdog&) = delete;
    ConnectionWatchdog& operator=(const ConnectionWatchdog&) = delete;

    /// Watches `socket` from now on, -1 for none. The descriptor stays the caller's.
    void watch(int socket);

private:
    using Clock = std::chrono::steady_clock;

    void setDeadline(std::optional<Clock::time_point> deadline);
    void keepWatch();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::optional<Clock::time_point> m_deadline;
    /// A descriptor of its own, so that a number that was closed and used again is never shut down.
    int m_socket = -1;
    bool m_ending = false;
    std::thread m_thread;
};

} // namespace backend
