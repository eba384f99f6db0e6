#pragma once

#include "authsetting/services/UserConfig.h"

/// A host's user with accounts that a test adds.
class HostUserConfig : public GW::CUserConfig
{
public:
    boost::shared_ptr<GW::CAccount> getAccountData(QString key) override;
    bool isSubAccount(QString key) const override;
    bool hasSubAccount(QString key) const override;
    mbservice::CBrokerInfo getBrokerSetting(int platformId, std::string brokerId) const override;
    mbservice::CBrokerInfo getStkBrokerSetting(int platformId, std::string brokerId) const override;

    /// Appends a futures account of this number.
    boost::shared_ptr<GW::CAccount> addAccount(const std::string& accountId,
                                               mbservice::EAuthType authType);
};
