#pragma once

#include <QString>

namespace KZ {

/// The text as it is safe to show on one line: control, format and direction characters, lone
/// surrogates and line ends, which could disguise what a cell says, are shown as U+FFFD. At most
/// `maxLength` UTF-16 units of the text are shown; a longer one ends in an ellipsis.
QString safeText(const QString& text, qsizetype maxLength);

/// The whole text as one cell of a tab-separated table: tabs and line ends become spaces, other
/// characters that safeText() would replace become U+FFFD.
QString clipboardText(const QString& text);

/// The text as a tool tip that is never read as markup.
QString toolTipText(const QString& text);

} // namespace KZ
