#pragma once

namespace admin {

/// How the command ends.
enum ExitCode {
    ExitSuccess = 0,
    /// Records of a file, or the change of a user, were refused.
    ExitRecordsRefused = 1,
    /// The command line is wrong.
    ExitBadOptions = 2,
    /// The store cannot be opened, read or changed.
    ExitStoreFailed = 3,
    /// A file cannot be read or written, or is not private enough.
    ExitFileFailed = 4,
    /// The store was examined and is not sound.
    ExitNotSound = 5,
};

} // namespace admin
