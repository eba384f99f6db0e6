#pragma once

namespace mbservice {

/// Weight of a message in the client's per-account message area.
enum MsgLevel : int {
    MSG_LEVEL_DEBUG = 0,
    MSG_LEVEL_INFO = 1,
    MSG_LEVEL_WARNING = 2,
    MSG_LEVEL_ERROR = 3,
};

} // namespace mbservice
