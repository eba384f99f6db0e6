#pragma once

#include "authsetting/AuthSettingExport.h"

#include <QMetaType>

#include <limits>

namespace GW {

/// The conditions of one grant. A value: it travels whole inside signals.
class AUTHSETTING_EXPORT CAuthLimit
{
public:
    /// The ratio that stands for "no condition", compared within 1e-5.
    static constexpr double noMarginRatio = std::numeric_limits<double>::max();

    /// Whether `availableMarginRatio` is a condition.
    bool hasMarginRatio() const;

    /// First day of the grant: seconds since 1970-01-01 UTC of that day's midnight in the exchange
    /// time zone.
    qint32 startTime = 0;
    /// Last day of the grant, included; same unit.
    qint32 endTime = 0;
    /// Limit on the ratio of available margin, a fraction in (0, 1], or `noMarginRatio`.
    double availableMarginRatio = noMarginRatio;
};

} // namespace GW

Q_DECLARE_METATYPE(GW::CAuthLimit)
