#pragma once

#include "authsetting/shell/AccountTexts.h"

#include <QString>

namespace GW {

/// Name of the account's platform as the client's environment looks it up by number, empty when it
/// does not know the platform or no environment is installed.
QString platformSettingName(const mbservice::CAccountInfo& account, StockRule rule);

} // namespace GW
