#pragma once

#include "authsetting/services/AccountInfo.h"

#include <QString>

namespace GW {

/// How a page tells stock accounts from futures accounts by `accountType`. The pages differ on
/// purpose in what they take an unknown type for.
enum class StockRule {
    /// Only type 2 is stock: the overview and the single account tab.
    OnlyStockType,
    /// Everything but type 1 is stock: the batch, import and sub-user tabs.
    AllButFuturesType,
};

bool isStockAccount(const mbservice::CAccountInfo& account, StockRule rule);

/// Name of the account's platform from the futures or stock table of the client's environment;
/// empty when the platform is unknown or no environment is installed.
QString platformName(const mbservice::CAccountInfo& account, StockRule rule);

/// Name of the account's broker from the user's configuration; empty when unknown.
QString brokerName(const mbservice::CAccountInfo& account, StockRule rule);

/// The day of a grant's start or end (seconds as in CAuthLimit) as "yyyy-MM-dd".
QString grantDayText(int seconds);

} // namespace GW
