#pragma once

#include "authsetting/services/UserConfig.h"

#include <QPair>
#include <QSet>

/// A user's configuration that a test fills by hand.
class FakeUserConfig : public GW::CUserConfig
{
public:
    boost::shared_ptr<GW::CAccount> getAccountData(QString key) override;
    bool isSubAccount(QString key) const override;
    bool hasSubAccount(QString key) const override;
    mbservice::CBrokerInfo getBrokerSetting(int platformId, std::string brokerId) const override;
    mbservice::CBrokerInfo getStkBrokerSetting(int platformId, std::string brokerId) const override;

    /// Appends an account and returns it for further changes.
    boost::shared_ptr<GW::CAccount> addAccount(int accountType, int platformId,
                                               const std::string& brokerId,
                                               const std::string& accountId,
                                               mbservice::EAuthType authType);

    QSet<QString> subAccounts;
    QSet<QString> parentAccounts;
    QMap<QPair<int, QString>, QString> brokers;
    QMap<QPair<int, QString>, QString> stkBrokers;
};
