#pragma once

#include <QString>

namespace backend {

/// The database login of a user: "as_" and the first 40 hexadecimal digits of the SHA-256 checksum
/// of his name. A server shows the names of its logins to everybody who may sign in, so they must
/// not be the users' names. The server makes the same name in authsetting.login_name().
QString loginName(const QString& userName);

} // namespace backend
