#pragma once

#include "kit/KitExport.h"

#include <QString>

namespace KZ {

/// Ways of writing a number, to be combined in the `flags` of formatDoubleNumber().
enum NumberFormatFlag : int {
    /// A plus sign before numbers above zero.
    NUMBER_FORMAT_PLUS_SIGN = 0x1,
    /// No zeros at the end of the decimals, and no point without decimals.
    NUMBER_FORMAT_TRIM_ZEROS = 0x2,
};

/// `value` in decimal notation with `decimals` digits (0 to 17) after a point, rounded to the
/// nearest; with commas between groups of three digits when `grouping` is set. A number that rounds
/// to zero has no sign. `invalidText` for what is no number to show: NaN, an infinity, and the
/// largest double (of either sign), which the records use for "not set".
/// May be called from any thread.
KZKIT_EXPORT QString formatDoubleNumber(double value, int decimals, int flags, bool grouping,
                                        const QString& invalidText);

} // namespace KZ
