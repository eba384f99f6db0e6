#pragma once

#include "kit/KitExport.h"

#include <QDateTime>

namespace KZ {

/// The last day that a grant may name. Grants carry signed 32-bit seconds, which end on 2038-01-19
/// at 03:14:07 UTC, so that the 18th is the last day that begins in time in every zone of the
/// world.
inline constexpr QDate LAST_GRANTABLE_DATE = QDate::fromJulianDay(2465442);

/// Seconds since 1970-01-01 00:00 UTC of the date and time that `dateTime` displays, read in the
/// exchange time zone (utils::exchangeTimeZone()) whatever zone `dateTime` itself is in; a
/// `dateTime` already in that zone keeps its exact moment. A time that the zone's clocks skip is
/// taken as the first moment after the gap, one that they show twice as the earlier. Results beyond
/// 32 bits are clamped; an invalid `dateTime` gives 0. May be called from any thread.
KZKIT_EXPORT int qDateTimeToSecond(const QDateTime& dateTime);

/// The moment `second` (seconds since 1970-01-01 00:00 UTC) in the exchange time zone.
/// May be called from any thread.
KZKIT_EXPORT QDateTime secondToQDateTime(int second);

/// The first moment of the day `date` in the exchange time zone, which is 00:00 unless the zone's
/// clocks skip it, the earlier 00:00 when they show it twice; invalid when `date` is. May be called
/// from any thread.
KZKIT_EXPORT QDateTime exchangeDayStart(const QDate& date);

/// The machine clock's present day in the exchange time zone. May be called from any thread.
KZKIT_EXPORT QDate exchangeToday();

} // namespace KZ
