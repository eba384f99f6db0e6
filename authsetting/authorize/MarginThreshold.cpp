#include "authsetting/authorize/MarginThreshold.h"

#include "kit/widgets/NumberFormat.h"

namespace GW {

bool normalizeMarginThreshold(QString& text)
{
    constexpr double tolerance = 1e-5;
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    const bool valid =
        !text.isEmpty() && isNumber && value - 100.0 <= tolerance && value - 0.0 > tolerance;
    if (valid)
        text = KZ::formatDoubleNumber(value, 2, 0, false, QStringLiteral("非法值"));
    return valid;
}

} // namespace GW
