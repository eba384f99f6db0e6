#include "host/tour/Watchdog.h"

#include <utility>

namespace host {

Watchdog::Watchdog(std::chrono::milliseconds patience, std::function<void()> bite)
    : m_thread([this, patience, bite = std::move(bite)] {
          std::unique_lock lock(m_mutex);
          if (!m_released.wait_for(lock, patience, [this] { return m_isReleased; }))
              bite();
      })
{
}

Watchdog::~Watchdog()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isReleased = true;
    }
    m_released.notify_all();
    m_thread.join();
}

} // namespace host
