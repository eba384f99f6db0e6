#pragma once

#include "utils/UtilsExport.h"

#include <QByteArray>

namespace utils {

/// The 20 raw bytes of the SHA-1 checksum of `bytes`.
///
/// It names a password on the wire for servers that expect it so; it protects nothing by itself,
/// and whoever stores a password stores a password hash of this value instead. May be called from
/// any thread.
AUTHUTILS_EXPORT QByteArray sha1_checksum(const QByteArray& bytes);

/// Two lower-case hexadecimal digits per byte of `bytes`. May be called from any thread.
AUTHUTILS_EXPORT QByteArray hexlify(const QByteArray& bytes);

} // namespace utils
