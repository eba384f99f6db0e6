#include "backend/store/ExchangeDays.h"

#include "utils/ExchangeTimeZone.h"
#include "utils/FirstMoment.h"

#include <QDateTime>

#include <algorithm>
#include <limits>

namespace backend {

ExchangeDays::ExchangeDays() : m_zone(utils::exchangeTimeZone()) {}

QDate ExchangeDays::day(qint32 secondsSinceEpoch)
{
    QDate& day = m_days[secondsSinceEpoch];
    if (!day.isValid())
        day = QDateTime::fromSecsSinceEpoch(secondsSinceEpoch, m_zone).date();
    return day;
}

qint32 ExchangeDays::seconds(const QDate& day)
{
    const auto found = m_seconds.constFind(day);
    if (found != m_seconds.constEnd())
        return *found;
    const qint64 seconds =
        std::clamp<qint64>(utils::firstMomentOf(day, QTime(0, 0), m_zone).toSecsSinceEpoch(),
                           std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max());
    return m_seconds.insert(day, static_cast<qint32>(seconds)).value();
}

} // namespace backend
