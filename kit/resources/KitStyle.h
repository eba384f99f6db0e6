#pragma once

#include "kit/KitExport.h"

class QStyle;
class QWidget;

namespace KZ {

/// The style in which the kit draws, whatever the style of the program. Made at first use, owned
/// by the application object; it reads its colours from CUiResource at every stroke.
KZKIT_EXPORT QStyle* kitStyle();

/// Sets the kit's style on `root` and on all its present descendants, for widgets that are not the
/// kit's own (trees, progress bars), whose scroll bars would otherwise keep the program's style.
KZKIT_EXPORT void applyKitStyle(QWidget* root);

} // namespace KZ
