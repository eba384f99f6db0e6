#include "backend/config/AccountSnapshot.h"

#include <utility>

namespace backend {

AccountSnapshot::AccountSnapshot(QVector<boost::shared_ptr<GW::CAccount>> accounts,
                                 QSet<QString> subAccounts, QSet<QString> mainAccounts)
    : m_accounts(std::move(accounts)), m_subAccounts(std::move(subAccounts)),
      m_mainAccounts(std::move(mainAccounts))
{
    m_byKey.reserve(m_accounts.size());
    for (const auto& account : std::as_const(m_accounts)) {
        const QString key = account->key();
        // The first of two wins, as it would for somebody walking the list.
        if (!m_byKey.contains(key))
            m_byKey.insert(key, account);
    }
}

boost::shared_ptr<GW::CAccount> AccountSnapshot::account(const QString& key) const
{
    return m_byKey.value(key);
}

} // namespace backend
