#pragma once

#include "authsetting/services/AuthLimit.h"

namespace GW {

/// Whether two grants have the same days and the same condition, if any.
bool isSameLimit(const CAuthLimit& left, const CAuthLimit& right);

} // namespace GW
