#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace admin {

/// The text of a password's bytes as they were typed or written. Nothing, with the reason in
/// `error` in Chinese, when they are not UTF-8: another text would be a password that nobody knows.
std::optional<QString> passwordText(const QByteArray& bytes, QString* error);

} // namespace admin
