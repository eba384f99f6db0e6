#pragma once

#include <QString>

#include <optional>

namespace admin {

/// Writes a line to standard output.
void say(const QString& line);
/// Writes a line to standard error; characters that could steer the terminal are replaced.
void complain(const QString& line);

/// Asks for a password on the terminal without showing it. Nothing, with the reason in `error` in
/// Chinese, when there is no terminal (which recommends `fileOption`) or the user gives up (Ctrl+C,
/// Ctrl+D).
std::optional<QString> askPassword(const QString& question, const QString& fileOption,
                                   QString* error);
/// The same for a password that is to be set: asks twice, and gives nothing when the answers
/// differ.
std::optional<QString> askNewPassword(const QString& question, const QString& fileOption,
                                      QString* error);

} // namespace admin
