#include "benchmarks/support/StallMeter.h"

#include <algorithm>

namespace bench {

StallMeter::StallMeter()
{
    m_sinceLast.start();
    // A timer without interval fires in every turn of the event loop.
    connect(&m_timer, &QTimer::timeout, this, &StallMeter::tick);
    m_timer.start(0);
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
