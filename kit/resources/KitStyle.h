#pragma once

#include "kit/KitExport.h"

class QEvent;
class QStyle;
class QWidget;

namespace KZ {

/// The style in which the kit draws, whatever the style of the program. Made at first use, owned
/// by the application object; it reads its colours from CUiResource at every stroke.
KZKIT_EXPORT QStyle* kitStyle();

/// Sets the kit's style on `root` and on all its present descendants, for widgets that are not the
/// kit's own (trees, progress bars), whose scroll bars would otherwise keep the program's style.
KZKIT_EXPORT void applyKitStyle(QWidget* root);

/// The same on the child that `event` reports as polished, if it does, unless that is a window or
/// has a style of its own: kit widgets hand their own events on to it.
void applyKitStyleToPolishedChild(QEvent* event);

} // namespace KZ
