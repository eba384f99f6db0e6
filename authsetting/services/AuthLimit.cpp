#include "authsetting/services/AuthLimit.h"

#include <cmath>

namespace GW {

bool CAuthLimit::hasMarginRatio() const
{
    constexpr double tolerance = 1e-5;
    // Written so that a value that is no number counts as a condition, which the store refuses.
    return !(std::fabs(availableMarginRatio - noMarginRatio) <= tolerance);
}

} // namespace GW
