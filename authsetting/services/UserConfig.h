#pragma once

#include "authsetting/AuthSettingExport.h"
#include "authsetting/services/Account.h"
#include "authsetting/services/BrokerInfo.h"

#include <QMap>
#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

#include <string>

namespace GW {

/// The logged-in user's configuration. GUI thread only.
class AUTHSETTING_EXPORT CUserConfig
{
public:
    CUserConfig();
    CUserConfig(const CUserConfig&) = delete;
    CUserConfig& operator=(const CUserConfig&) = delete;
    virtual ~CUserConfig();

    /// The account behind `key`, own or received; empty when unknown.
    virtual boost::shared_ptr<CAccount> getAccountData(QString key) = 0;
    /// Whether the account is a sub-account of another; such accounts are never granted.
    virtual bool isSubAccount(QString key) const = 0;
    /// Whether the account has sub-accounts; such accounts are never granted either.
    virtual bool hasSubAccount(QString key) const = 0;
    /// Broker of a futures account; an empty name when unknown.
    virtual mbservice::CBrokerInfo getBrokerSetting(int platformId, std::string brokerId) const = 0;
    /// Broker of a stock account; an empty name when unknown.
    virtual mbservice::CBrokerInfo getStkBrokerSetting(int platformId,
                                                       std::string brokerId) const = 0;

    /// The logged-in user.
    QString userName;
    /// His accounts in the client's order. The service replaces the elements when their state
    /// changes, so a page that keeps one keeps what it has shown.
    QVector<boost::shared_ptr<CAccount>> accounts;
    /// Saved layouts of the dialog's tables by table identifier. The pages write them when they are
    /// destroyed; the service keeps them between sessions.
    QMap<int, QString> tableLayouts;
};

} // namespace GW
