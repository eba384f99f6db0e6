#pragma once

namespace backend {

/// Why a sealed file could not be made, written, read or opened.
enum class SealedFileError {
    None,
    /// The bytes are no authorization file at all.
    NotOurs,
    /// An authorization file of a version or profile that this program does not open.
    Unsupported,
    /// An authorization file that is cut short, longer than it says, or altered in its content.
    Damaged,
    /// The password is wrong, or the salt, the commitment or the profile was altered: these two
    /// cannot be told apart without the right password.
    WrongPassword,
    OutOfMemory,
    /// The file system refused; errno says why.
    Io,
    /// What was to be sealed is not acceptable: an empty password, no content, content over the
    /// size limit, or a grant that the format cannot carry.
    InvalidInput,
};

} // namespace backend
