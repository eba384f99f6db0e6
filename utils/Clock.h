#pragma once

#include "utils/UtilsExport.h"

#include <functional>

namespace utils {

/// Seconds on a monotonic clock with an arbitrary start; only differences mean anything.
/// May be called from any thread.
AUTHUTILS_EXPORT double clock();

/// Replaces the source of clock(), in seconds; an empty function restores the monotonic clock.
/// Call it on the GUI thread while no other thread reads the clock: it is meant for tests.
AUTHUTILS_EXPORT void setClockSource(std::function<double()> source);

} // namespace utils
