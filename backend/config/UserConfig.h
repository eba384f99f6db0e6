#pragma once

#include "authsetting/services/UserConfig.h"
#include "backend/config/AccountSnapshot.h"
#include "backend/config/BrokerTable.h"
#include "backend/config/TableLayoutFile.h"

namespace backend {

/// The signed-in user's configuration, fed with his accounts by the client and with his table
/// layouts by a file. Every look-up takes constant time, however many accounts there are. GUI
/// thread only.
class ClientUserConfig final : public GW::CUserConfig
{
public:
    /// Reads the layouts that `userName` saved in `dataFolder`; an empty folder keeps none.
    ClientUserConfig(const QString& userName, const QString& dataFolder);

    boost::shared_ptr<GW::CAccount> getAccountData(QString key) override;
    bool isSubAccount(QString key) const override;
    bool hasSubAccount(QString key) const override;
    mbservice::CBrokerInfo getBrokerSetting(int platformId, std::string brokerId) const override;
    mbservice::CBrokerInfo getStkBrokerSetting(int platformId, std::string brokerId) const override;

    /// Puts `snapshot` in the place of the accounts shown so far.
    void setAccounts(const AccountSnapshot& snapshot);
    /// Puts these futures and stock brokers in the place of those known so far.
    void setBrokers(const QVector<mbservice::CBrokerInfo>& futures,
                    const QVector<mbservice::CBrokerInfo>& stock);

    /// Saves the table layouts if they changed since they were read or saved; the session calls it
    /// when it ends, after the dialog is gone. False, with a line in the log, when that failed.
    bool saveTableLayouts();

private:
    AccountSnapshot m_snapshot;
    BrokerTable m_brokers;
    BrokerTable m_stkBrokers;
    TableLayoutFile m_layoutFile;
    QMap<int, QString> m_savedLayouts;
};

} // namespace backend
