#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace admin {

/// Whether others than the owner may read a file.
enum class Privacy { Any, OwnerOnly };

/// The bytes of a regular file of at most `maxSize` bytes. Nothing, with the reason in `error` in
/// Chinese, when it cannot be read, is none or larger, or when its owner asked for privacy in vain:
/// a file with passwords must belong to the user who runs the program and be closed to all others.
std::optional<QByteArray> readFile(const QString& path, Privacy privacy, qint64 maxSize,
                                   QString* error);

/// The password on the first line of a private file. Nothing, with the reason in `error`, when
/// there is none.
std::optional<QString> readPasswordFile(const QString& path, QString* error);
/// The same from standard input, which must not be a terminal: that would show it.
std::optional<QString> readPasswordInput(QString* error);

} // namespace admin
