#include "authsetting/authorize/PlatformSetting.h"

#include "authsetting/services/Config.h"
#include "authsetting/services/Services.h"

namespace GW {

QString platformSettingName(const mbservice::CAccountInfo& account, StockRule rule)
{
    const CConfig* config = getConfig();
    if (!config)
        return {};
    const mbservice::CPlatformInfo platform =
        isStockAccount(account, rule) ? config->getStkPlatformSetting(account.platformId)
                                      : config->getPlatformSetting(account.platformId);
    return QString::fromStdString(platform.name);
}

} // namespace GW
