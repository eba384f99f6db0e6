#pragma once

#include "authsetting/services/Account.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

namespace backend {

/// The accounts that one user sees, at one moment, with what finds them by key. Build it on any
/// thread; it shares its data, so handing it over costs nothing.
class AccountSnapshot
{
public:
    AccountSnapshot() = default;
    /// `accounts` in the order the user sees them; `subAccounts` are the keys of those that are
    /// sub-accounts of another, `mainAccounts` of those that have sub-accounts.
    AccountSnapshot(QVector<boost::shared_ptr<GW::CAccount>> accounts, QSet<QString> subAccounts,
                    QSet<QString> mainAccounts);

    const QVector<boost::shared_ptr<GW::CAccount>>& accounts() const { return m_accounts; }
    /// Empty when `key` is unknown.
    boost::shared_ptr<GW::CAccount> account(const QString& key) const;
    bool isSubAccount(const QString& key) const { return m_subAccounts.contains(key); }
    bool hasSubAccount(const QString& key) const { return m_mainAccounts.contains(key); }

private:
    QVector<boost::shared_ptr<GW::CAccount>> m_accounts;
    QHash<QString, boost::shared_ptr<GW::CAccount>> m_byKey;
    QSet<QString> m_subAccounts;
    QSet<QString> m_mainAccounts;
};

} // namespace backend
