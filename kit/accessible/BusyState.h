#pragma once

#include "kit/KitExport.h"

class QWidget;

namespace KZ {

/// Tells assistive tools that a window or container of the kit waits for something, or does so no
/// longer. It changes nothing else about the widget. GUI thread only.
KZKIT_EXPORT void setAccessibleBusy(QWidget* widget, bool busy);
KZKIT_EXPORT bool isAccessibleBusy(const QWidget* widget);

} // namespace KZ
