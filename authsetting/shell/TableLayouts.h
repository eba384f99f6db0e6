#pragma once

namespace KZ {
class COddEvenRowTable;
}

namespace GW {

/// Applies the column layout that the user's configuration keeps under the table's identifier;
/// an empty one when there is none, nothing without an installed configuration.
void restoreTableLayout(KZ::COddEvenRowTable* table);

/// Writes the table's column layout into the user's configuration under its identifier; nothing
/// without an installed configuration.
void saveTableLayout(const KZ::COddEvenRowTable* table);

} // namespace GW
