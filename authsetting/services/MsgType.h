#pragma once

namespace GW {

/// Kind of a message in the client's per-account message area.
enum EMsgTypeDef : int {
    MSG_TYPE_AUTH = 0,
    MSG_TYPE_SYSTEM = 1,
};

} // namespace GW
