#pragma once

#include <optional>

namespace KZ {

/// Whether Caps Lock is on, asked from the X server; nothing where the platform does not tell
/// (Qt has no interface of its own for it). GUI thread only.
std::optional<bool> queryCapsLock();

} // namespace KZ
