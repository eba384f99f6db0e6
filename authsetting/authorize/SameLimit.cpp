#include "authsetting/authorize/SameLimit.h"

#include <QtGlobal>

namespace GW {

bool isSameLimit(const CAuthLimit& left, const CAuthLimit& right)
{
    return left.startTime == right.startTime && left.endTime == right.endTime &&
           left.hasMarginRatio() == right.hasMarginRatio() &&
           (!left.hasMarginRatio() ||
            qFuzzyCompare(left.availableMarginRatio, right.availableMarginRatio));
}

} // namespace GW
