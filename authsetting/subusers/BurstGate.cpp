#include "authsetting/subusers/BurstGate.h"

#include <utility>

namespace GW {

CBurstGate::CBurstGate(std::function<void()> action) : m_action(std::move(action))
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(quietMs);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { onQuiet(); });
}

bool CBurstGate::request(int runsAtOnce)
{
    if (!m_timer.isActive())
        m_timer.start();
    if (m_runs >= runsAtOnce) {
        m_merged = true;
        return false;
    }
    ++m_runs;
    m_action();
    return true;
}

void CBurstGate::reset()
{
    m_timer.stop();
    m_runs = 0;
    m_merged = false;
}

void CBurstGate::onQuiet()
{
    if (!m_merged) {
        m_runs = 0;
        return;
    }
    m_merged = false;
    m_timer.start();
    m_action();
}

} // namespace GW
