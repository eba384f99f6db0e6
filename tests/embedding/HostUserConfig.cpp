#include "tests/embedding/HostUserConfig.h"

#include <boost/make_shared.hpp>

boost::shared_ptr<GW::CAccount> HostUserConfig::getAccountData(QString key)
{
    for (const auto& account : std::as_const(accounts)) {
        if (account->key() == key)
            return account;
    }
    return {};
}

bool HostUserConfig::isSubAccount(QString) const
{
    return false;
}

bool HostUserConfig::hasSubAccount(QString) const
{
    return false;
}

mbservice::CBrokerInfo HostUserConfig::getBrokerSetting(int platformId, std::string brokerId) const
{
    return {platformId, brokerId, "a broker"};
}

mbservice::CBrokerInfo HostUserConfig::getStkBrokerSetting(int platformId,
                                                           std::string brokerId) const
{
    return {platformId, brokerId, std::string()};
}

boost::shared_ptr<GW::CAccount> HostUserConfig::addAccount(const std::string& accountId,
                                                           mbservice::EAuthType authType)
{
    auto account = boost::make_shared<GW::CAccount>();
    account->accountType = 1;
    account->platformId = 1;
    account->brokerId = "66";
    account->accountId = accountId;
    account->authType = authType;
    accounts.append(account);
    return account;
}
