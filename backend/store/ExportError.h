#pragma once

#include <QString>

namespace backend {

/// Results of writing an authorization file; callers outside only tell 0 from the others.
enum class ExportError : int {
    None = 0,
    NoGrants = 1,
    /// A grant that was never prepared.
    NoReference = 2,
    EmptyPassword = 3,
    BadPath = 4,
    /// A file of the completed name was there before, and nobody was asked about it.
    FileExists = 5,
    /// The store does not know the reference, or it is another user's.
    UnknownReference = 6,
    /// The reference was replaced, cancelled, has expired or was written into another file.
    NotPrepared = 7,
    /// The grant is not the one that was prepared under this reference.
    Altered = 8,
    /// A rule of the store that held when the grant was prepared no longer does.
    Refused = 9,
    /// Encoding or sealing failed.
    Seal = 10,
    /// The file could not be written or given its name.
    Write = 11,
    /// The store failed.
    Store = 12,
};

/// In Chinese; empty for None.
QString exportErrorText(ExportError error);

} // namespace backend
