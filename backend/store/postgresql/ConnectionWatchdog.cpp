#include "backend/store/postgresql/ConnectionWatchdog.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace backend {

ConnectionWatchdog::Guard::Guard(ConnectionWatchdog& watchdog, std::chrono::milliseconds time)
    : m_watchdog(watchdog)
{
    m_watchdog.setDeadline(Clock::now() + time);
}

ConnectionWatchdog::Guard::~Guard()
{
    m_watchdog.setDeadline(std::nullopt);
}

ConnectionWatchdog::ConnectionWatchdog() : m_thread([this] { keepWatch(); }) {}

ConnectionWatchdog::~ConnectionWatchdog()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_one();
    m_thread.join();
    watch(-1);
}

void ConnectionWatchdog::watch(int socket)
{
    const std::lock_guard lock(m_mutex);
    if (m_socket >= 0)
        ::close(m_socket);
    m_socket = socket < 0 ? -1 : ::fcntl(socket, F_DUPFD_CLOEXEC, 0);
}

void ConnectionWatchdog::setDeadline(std::optional<Clock::time_point> deadline)
{
    {
        const std::lock_guard lock(m_mutex);
        m_deadline = deadline;
    }
    m_changed.notify_one();
}

void ConnectionWatchdog::keepWatch()
{
    std::unique_lock lock(m_mutex);
    while (!m_ending) {
        if (!m_deadline) {
            m_changed.wait(lock);
            continue;
        }
        if (Clock::now() < *m_deadline) {
            m_changed.wait_until(lock, *m_deadline);
            continue;
        }
        if (m_socket >= 0)
            ::shutdown(m_socket, SHUT_RDWR);
        m_deadline.reset();
    }
}

} // namespace backend
