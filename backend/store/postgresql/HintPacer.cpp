#include "backend/store/postgresql/HintPacer.h"

#include <algorithm>
#include <utility>

namespace backend {

HintPacer::HintPacer()
    : HintPacer([] {
          return std::chrono::duration_cast<Milliseconds>(
              std::chrono::steady_clock::now().time_since_epoch());
      })
{
}

HintPacer::HintPacer(Clock clock) : m_clock(std::move(clock)) {}

void HintPacer::note()
{
    m_isHinted = true;
}

std::optional<HintPacer::Milliseconds> HintPacer::wait() const
{
    if (!m_isHinted)
        return std::nullopt;
    if (!m_lastRead)
        return Milliseconds(0);
    return std::max(*m_lastRead + m_interval - m_clock(), Milliseconds(0));
}

void HintPacer::beginRead()
{
    m_isHinted = false;
}

void HintPacer::endRead(bool foundChange)
{
    const Milliseconds now = m_clock();
    const bool wasQuiet = !m_lastRead || now - *m_lastRead >= quiet;
    if (foundChange)
        m_interval = busyInterval;
    else if (wasQuiet || m_interval < firstInterval)
        m_interval = firstInterval;
    else
        m_interval = std::min(m_interval * 2, longestInterval);
    m_lastRead = now;
}

} // namespace backend
