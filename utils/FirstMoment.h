#pragma once

#include "utils/UtilsExport.h"

#include <QDateTime>
#include <QTimeZone>

namespace utils {

/// The first moment, displayed in `zone`, at which clocks there show `date` and `time`: the earlier
/// one when they show it twice, the end of the gap when they skip it. Decided from the zone's
/// offsets alone, because what Qt makes of such a time differs with its version and the zone data.
/// Invalid when `date`, `time` or `zone` is. May be called from any thread.
AUTHUTILS_EXPORT QDateTime firstMomentOf(const QDate& date, const QTime& time,
                                         const QTimeZone& zone);

} // namespace utils
