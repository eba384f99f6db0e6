#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace host {

/// Calls a function on a thread of its own when it is not destroyed in time, also when every other
/// thread of the program hangs.
class Watchdog
{
public:
    Watchdog(std::chrono::milliseconds patience, std::function<void()> bite);
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

private:
    std::mutex m_mutex;
    std::condition_variable m_released;
    bool m_isReleased = false;
    std::thread m_thread;
};

} // namespace host
