#pragma once

#include "kit/resources/UiResource.h"

#include <QRect>
#include <QSize>

class QWidget;

namespace KZ {
class CBaseDialog;
}

namespace GW {

/// The settings dialog's size in one of the registry's sets of sizes.
QSize dialogSize(const KZ::CBaseDialog& dialog, KZ::CUiResource::SizeSet set);

/// Where a dialog over `parent` may stand: the available area of the screen that the parent's
/// window is on, of the first screen without a parent.
QRect availableArea(const QWidget* parent);

/// Chooses the compact sizes when the dialog in its standard size is larger than `available`, else
/// the standard ones, and lets a dialog that stood elsewhere be placed anew when it is shown.
void fitDialog(KZ::CBaseDialog* dialog, const QRect& available);

} // namespace GW
