#include "kit/dates/DateConversions.h"

#include "utils/ExchangeTimeZone.h"
#include "utils/FirstMoment.h"

#include <algorithm>
#include <limits>

namespace KZ {

int qDateTimeToSecond(const QDateTime& dateTime)
{
    if (!dateTime.isValid())
        return 0;
    const QTimeZone zone = utils::exchangeTimeZone();
    const bool isExchangeTime = dateTime.timeSpec() == Qt::TimeZone && dateTime.timeZone() == zone;
    const QDateTime moment =
        isExchangeTime ? dateTime : utils::firstMomentOf(dateTime.date(), dateTime.time(), zone);
    return static_cast<int>(std::clamp<qint64>(moment.toSecsSinceEpoch(),
                                               std::numeric_limits<int>::min(),
                                               std::numeric_limits<int>::max()));
}

QDateTime secondToQDateTime(int second)
{
    return QDateTime::fromSecsSinceEpoch(second, utils::exchangeTimeZone());
}

QDateTime exchangeDayStart(const QDate& date)
{
    return utils::firstMomentOf(date, QTime(0, 0), utils::exchangeTimeZone());
}

QDate exchangeToday()
{
    return QDateTime::currentDateTimeUtc().toTimeZone(utils::exchangeTimeZone()).date();
}

} // namespace KZ
