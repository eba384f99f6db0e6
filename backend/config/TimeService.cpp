#include "backend/config/TimeService.h"

#include "utils/ExchangeTimeZone.h"

#include <utility>

namespace backend {

SystemTimeService::SystemTimeService(MillisecondClock clock) : m_clock(std::move(clock))
{
    if (!m_clock)
        m_clock = &QDateTime::currentMSecsSinceEpoch;
}

QDateTime SystemTimeService::currentDateTime() const
{
    return QDateTime::fromMSecsSinceEpoch(m_clock() + m_offset, utils::exchangeTimeZone());
}

} // namespace backend
