#pragma once

class QWidget;

namespace host {

/// Changes between the light and the dark theme.
void switchTheme();

/// Lets the theme shortcut (Ctrl+Shift+T) work in `window`, also while a modal dialog blocks the
/// window with the menu.
void addThemeShortcut(QWidget* window);

} // namespace host
