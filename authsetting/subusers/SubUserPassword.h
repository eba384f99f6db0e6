#pragma once

#include <QString>

namespace GW {

/// What is sent in place of a restricted user's password: the SHA-1 digest of its local 8-bit form
/// in hexadecimal. Blanks around it do not count, an empty password stays empty, and one of
/// exactly 40 characters is taken for a digest already.
QString subUserPasswordDigest(const QString& password);

} // namespace GW
