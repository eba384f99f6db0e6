#pragma once

#include <QString>

class QWidget;

namespace GW {

/// Shows `text` for three seconds at `anchor`, in the look of `kind` (1, 2 or 3); with a null or
/// hidden anchor it shows where the user looks. Texts about one request carry its number as
/// `request` and form a list of their own; 0 belongs to none. All tips of the dialog go through
/// here.
void showResultTip(QWidget* anchor, const QString& text, int kind, quint64 request = 0);

/// Says at `control`, which the user has just used, that it did nothing because what he saw was no
/// longer true.
void showChangedTip(QWidget* control);

/// A number for the next request, never given before.
quint64 newRequestNumber();

} // namespace GW
