#pragma once

#include <QString>

namespace GW {

/// Checks what the user typed as the limit on the available margin, in percent: a number above 0
/// and up to 100, both within 1e-5. A valid text is rewritten with two decimals (true), any other
/// is left as it is (false).
bool normalizeMarginThreshold(QString& text);

} // namespace GW
