#pragma once

#include <QString>
#include <QTimeZone>

namespace backend {

/// The exchange time zone that the settings file at `settingsPath` names (INI, group "exchange",
/// key "timeZone", an IANA name such as Asia/Shanghai). Asia/Shanghai without such a file or key;
/// likewise, with a line in the log, when the file cannot be read or the name means no zone. The
/// caller hands it to utils::setExchangeTimeZone() once at start.
QTimeZone readExchangeTimeZone(const QString& settingsPath);

} // namespace backend
