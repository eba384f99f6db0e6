#pragma once

#include "authsetting/AuthSettingExport.h"

namespace GW {

class CAuthSettingNavigator;

/// Fills the tree with every place the dialog has: one page for the user's accounts with a child
/// for each of them, one for imported grants with a child for each account granted to him, and one
/// for his sub-users with a child for each. Hand it to CAuthSettingDialog::setNavigatorFiller().
/// Accounts that take part in a sub-account relation are left out: they can never be granted.
AUTHSETTING_EXPORT void fillNavigator(CAuthSettingNavigator* navigator);

} // namespace GW
