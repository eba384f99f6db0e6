#pragma once

#include "utils/UtilsExport.h"

#include <QTimeZone>

namespace utils {

/// The one time zone in which the days of a grant begin and end, for grantor and grantee alike,
/// whatever the zone of the machine. Asia/Shanghai unless set. May be called from any thread.
AUTHUTILS_EXPORT QTimeZone exchangeTimeZone();

/// Sets the exchange time zone of this process. Returns false and changes nothing when `zone` is
/// not valid. Call it once at start, before any date is converted.
AUTHUTILS_EXPORT bool setExchangeTimeZone(const QTimeZone& zone);

} // namespace utils
