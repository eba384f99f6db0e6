#include "authsetting/shell/AccountTexts.h"

#include "authsetting/services/Config.h"
#include "authsetting/services/Services.h"
#include "authsetting/services/UserConfig.h"
#include "kit/dates/DateConversions.h"

namespace GW {

namespace {

constexpr int futuresType = 1;
constexpr int stockType = 2;

} // namespace

bool isStockAccount(const mbservice::CAccountInfo& account, StockRule rule)
{
    if (rule == StockRule::OnlyStockType)
        return account.accountType == stockType;
    return account.accountType != futuresType;
}

QString platformName(const mbservice::CAccountInfo& account, StockRule rule)
{
    const CConfig* config = getConfig();
    if (!config)
        return {};
    const auto& table = isStockAccount(account, rule) ? config->stkPlatforms : config->platforms;
    // An unknown platform reads as an empty record and so as an empty name.
    return QString::fromStdString(table.value(account.platformId).name);
}

QString brokerName(const mbservice::CAccountInfo& account, StockRule rule)
{
    const CUserConfig* user = getUserConfig();
    if (!user)
        return {};
    const mbservice::CBrokerInfo broker =
        isStockAccount(account, rule)
            ? user->getStkBrokerSetting(account.platformId, account.brokerId)
            : user->getBrokerSetting(account.platformId, account.brokerId);
    return QString::fromStdString(broker.name);
}

QString grantDayText(int seconds)
{
    return KZ::secondToQDateTime(seconds).toString(QStringLiteral("yyyy-MM-dd"));
}

} // namespace GW
