#include "kit/dates/DateConversions.h"

#include "utils/ExchangeTimeZone.h"

#include <algorithm>
#include <limits>

namespace KZ {

namespace {

/// The moment at which clocks in `zone` show `date` and `time`.
QDateTime momentIn(const QTimeZone& zone, const QDate& date, const QTime& time)
{
    QDateTime start = date.startOfDay(zone);
    if (start.time() >= time && start.date() == date)
        return start;
    // Made from the count, because a skipped time is otherwise shown as it was given.
    QDateTime moment =
        QDateTime::fromMSecsSinceEpoch(QDateTime(date, time, zone).toMSecsSinceEpoch(), zone);
    if (moment.date() == date && moment.time() == time) {
        // Of two moments with the same reading Qt may give either.
        const QTimeZone::OffsetData change = zone.previousTransition(moment);
        if (!change.atUtc.isValid())
            return moment;
        const int gained = zone.offsetFromUtc(change.atUtc.addSecs(-1)) - change.offsetFromUtc;
        const QDateTime earlier = moment.addSecs(-gained);
        return gained > 0 && earlier < change.atUtc ? earlier : moment;
    }
    const QTimeZone::OffsetData change = zone.nextTransition(start);
    return change.atUtc.isValid() ? change.atUtc.toTimeZone(zone) : moment;
}

} // namespace

int qDateTimeToSecond(const QDateTime& dateTime)
{
    if (!dateTime.isValid())
        return 0;
    const QTimeZone zone = utils::exchangeTimeZone();
    const bool isExchangeTime = dateTime.timeSpec() == Qt::TimeZone && dateTime.timeZone() == zone;
    QDateTime moment = isExchangeTime ? dateTime : momentIn(zone, dateTime.date(), dateTime.time());
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
    return date.startOfDay(utils::exchangeTimeZone());
}

QDate exchangeToday()
{
    return QDateTime::currentDateTimeUtc().toTimeZone(utils::exchangeTimeZone()).date();
}

} // namespace KZ
