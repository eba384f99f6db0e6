#pragma once

namespace host {

/// Puts the texts of Qt's own dialogs and messages into Chinese; once per application object.
/// Without Qt's translation files they stay English, with a warning in the log.
void installChineseQtTexts();

} // namespace host
