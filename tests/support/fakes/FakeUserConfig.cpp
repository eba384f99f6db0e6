#include "tests/support/fakes/FakeUserConfig.h"

#include <boost/make_shared.hpp>

namespace {

mbservice::CBrokerInfo lookUp(const QMap<QPair<int, QString>, QString>& brokers, int platformId,
                              const std::string& brokerId)
{
    const QString name = brokers.value({platformId, QString::fromStdString(brokerId)});
    return {platformId, brokerId, name.toStdString()};
}

} // namespace

boost::shared_ptr<GW::CAccount> FakeUserConfig::getAccountData(QString key)
{
    for (const auto& account : std::as_const(accounts)) {
        if (account->key() == key)
            return account;
    }
    return {};
}

bool FakeUserConfig::isSubAccount(QString key) const
{
    return subAccounts.contains(key);
}

bool FakeUserConfig::hasSubAccount(QString key) const
{
    return parentAccounts.contains(key);
}

mbservice::CBrokerInfo FakeUserConfig::getBrokerSetting(int platformId, std::string brokerId) const
{
    return lookUp(brokers, platformId, brokerId);
}

mbservice::CBrokerInfo FakeUserConfig::getStkBrokerSetting(int platformId,
                                                           std::string brokerId) const
{
    return lookUp(stkBrokers, platformId, brokerId);
}

boost::shared_ptr<GW::CAccount> FakeUserConfig::addAccount(int accountType, int platformId,
                                                           const std::string& brokerId,
                                                           const std::string& accountId,
                                                           mbservice::EAuthType authType)
{
    auto account = boost::make_shared<GW::CAccount>();
    account->accountType = accountType;
    account->platformId = platformId;
    account->brokerId = brokerId;
    account->accountId = accountId;
    account->authType = authType;
    accounts.append(account);
    return account;
}
