#pragma once

#include "kit/KitExport.h"

class QLineEdit;
class QPoint;

namespace KZ {

/// Shows the context menu of a one-line editor (undo, cut, copy, paste ...) at a global position,
/// in Chinese and in the kit's style.
KZKIT_EXPORT void showEditorMenu(QLineEdit* editor, const QPoint& globalPosition);

} // namespace KZ
