#pragma once

class QHelpEvent;
class QLineEdit;

namespace KZ {

/// Brings the beginning of the text into view if the editor takes no input: a name is known by how
/// it begins, but setting a text shows its end.
void showTextFromStart(QLineEdit* editor);

/// Shows the whole text as a tool tip when the editor has room for a part of it only; returns
/// whether it did. The text is never read as markup, a password never shown.
bool showCutText(const QLineEdit* editor, const QHelpEvent& event);

} // namespace KZ
