#pragma once

#include "authsetting/services/AccountInfo.h"

#include <QString>

#include <string>

namespace backend {

/// Longest text, in UTF-16 units, that a name or an account field may have: the width of the
/// store's columns.
inline constexpr int maxTextLength = 255;

/// Whether the text holds a character that shows as nothing or changes how its neighbours show:
/// control and format characters (bidirectional overrides among them), line separators, halves of
/// surrogate pairs.
bool hasHostileCharacter(const QString& text);

/// Whether the bytes are UTF-8, short enough and without hostile characters; empty ones are.
bool isPlainText(const std::string& bytes);

/// Why `name` cannot be a user's name, in Chinese; empty when it can.
QString userNameProblem(const QString& name);

/// Why `account` cannot be any account, in Chinese; empty when it can.
QString accountProblem(const mbservice::CAccountInfo& account);

/// `text` cut to what fits into a column.
QString fitted(const QString& text);

} // namespace backend
