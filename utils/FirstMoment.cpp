#include "utils/FirstMoment.h"

#include <algorithm>
#include <limits>

namespace utils {

QDateTime firstMomentOf(const QDate& date, const QTime& time, const QTimeZone& zone)
{
    const QDateTime shown(date, time, QTimeZone::utc());
    if (!shown.isValid() || !time.isValid() || !zone.isValid())
        return {};
    // No clock is a whole day from UTC, so that the moment lies between.
    const QDateTime from = shown.addDays(-1);
    const qint64 reading = shown.toMSecsSinceEpoch();
    const auto momentAt = [reading](int offset) { return reading - qint64(offset) * 1000; };

    int offset = zone.offsetFromUtc(from);
    qint64 offsetSince = std::numeric_limits<qint64>::min();
    const QTimeZone::OffsetDataList changes = zone.transitions(from, shown.addDays(1));
    for (const QTimeZone::OffsetData& change : changes) {
        const qint64 changesAt = change.atUtc.toMSecsSinceEpoch();
        if (momentAt(offset) < changesAt)
            break;
        offset = change.offsetFromUtc;
        offsetSince = changesAt;
    }
    return QDateTime::fromMSecsSinceEpoch(std::max(momentAt(offset), offsetSince), zone);
}

} // namespace utils
