#pragma once

#include <QtGlobal>

namespace backend {

/// The fixed cost of turning a password into a key. A file names its profile by number and carries
/// no tunable parameter, so that nobody can hand out a file that is cheap to guess at or that
/// exhausts the memory of its reader.
enum class SealProfile : quint8 {
    /// Argon2id, 3 passes over 64 MiB, a 16-byte salt: the second recommendation of RFC 9106
    /// (section 4), except that the library runs it with one lane where the RFC names four.
    Standard = 1,
    /// The library's smallest cost, for tests only; refused when opening unless asked for.
    Test = 255,
};

} // namespace backend
