#pragma once

class QString;
class QWidget;

namespace KZ {

/// The text without the wide blanks with which captions are spread over their room and over which
/// a screen reader would stumble.
QString spokenName(const QString& caption);

/// Gives an editor its accessible name, and with it what in it takes the typing: the focus of a
/// screen reader is there.
void setEditorName(QWidget* editor, const QString& name);

} // namespace KZ
