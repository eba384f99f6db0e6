#include "authsetting/services/AuthLimit.h"

#include <cmath>

namespace GW {

bool CAuthLimit::hasMarginRatio() const
{
    constexpr double tolerance = 1e-5;
    return std::fabs(availableMarginRatio - noMarginRatio) > tolerance;
}

} // namespace GW
