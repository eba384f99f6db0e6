#pragma once

#include <QString>

class QWidget;

namespace GW {

/// Shows `text` for three seconds at `anchor`, in the look of `kind` (1, 2 or 3); with a null or
/// hidden anchor it shows where the user looks. All tips of the dialog go through here.
void showResultTip(QWidget* anchor, const QString& text, int kind);

} // namespace GW
