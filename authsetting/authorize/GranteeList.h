#pragma once

namespace KZ {
class CComboBox;
}

namespace GW {

/// Offers the user's enabled restricted users, in the client's order, and empties the edit text;
/// leaves the box as it is when the list is not available.
void fillGranteeBox(KZ::CComboBox* box);

} // namespace GW
