#include "benchmarks/support/StallMeter.h"

#include <algorithm>

namespace bench {

StallMeter::StallMeter()
{
    m_sinceLast.start();
    connect(&m_timer, &QTimer::timeout, this, &StallMeter::tick);
    m_timer.setTimerType(Qt::PreciseTimer);
    // Often enough to see a stall, and seldom enough to leave the processor to the others.
    m_timer.start(1);
}

void StallMeter::tick()
{
    m_longest = std::max(m_longest, m_sinceLast.nsecsElapsed());
    m_sinceLast.restart();
}

double StallMeter::longestMilliseconds() const
{
    constexpr double nanosecondsPerMillisecond = 1e6;
    return static_cast<double>(std::max(m_longest, m_sinceLast.nsecsElapsed())) /
           nanosecondsPerMillisecond;
}

} // namespace bench
