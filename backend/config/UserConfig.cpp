#include "backend/config/UserConfig.h"

namespace backend {

ClientUserConfig::ClientUserConfig(const QString& userName, const QString& dataFolder)
    : m_layoutFile(dataFolder, userName)
{
    this->userName = userName;
    m_savedLayouts = m_layoutFile.load();
    tableLayouts = m_savedLayouts;
}

boost::shared_ptr<GW::CAccount> ClientUserConfig::getAccountData(QString key)
{
    return m_snapshot.account(key);
}

bool ClientUserConfig::isSubAccount(QString key) const
{
    return m_snapshot.isSubAccount(key);
}

bool ClientUserConfig::hasSubAccount(QString key) const
{
    return m_snapshot.hasSubAccount(key);
}

mbservice::CBrokerInfo ClientUserConfig::getBrokerSetting(int platformId,
                                                          std::string brokerId) const
{
    return m_brokers.broker(platformId, brokerId);
}

mbservice::CBrokerInfo ClientUserConfig::getStkBrokerSetting(int platformId,
                                                             std::string brokerId) const
{
    return m_stkBrokers.broker(platformId, brokerId);
}

void ClientUserConfig::setAccounts(const AccountSnapshot& snapshot)
{
    m_snapshot = snapshot;
    accounts = snapshot.accounts();
}

void ClientUserConfig::setBrokers(const QVector<mbservice::CBrokerInfo>& futures,
                                  const QVector<mbservice::CBrokerInfo>& stock)
{
    m_brokers = BrokerTable(futures);
    m_stkBrokers = BrokerTable(stock);
}

bool ClientUserConfig::saveTableLayouts()
{
    if (tableLayouts == m_savedLayouts)
        return true;
    if (!m_layoutFile.save(tableLayouts))
        return false;
    m_savedLayouts = tableLayouts;
    return true;
}

} // namespace backend
