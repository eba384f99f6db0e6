#pragma once

#include "tests/monkey/Action.h"

#include <functional>

namespace monkey {

/// A shorter script that `stillFails`, found by leaving out ever smaller parts, with at most
/// `tries` calls.
Script shortened(Script script, const std::function<bool(const Script&)>& stillFails, int tries);

} // namespace monkey
