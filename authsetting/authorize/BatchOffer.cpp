#include "authsetting/authorize/BatchOffer.h"

#include "authsetting/authorize/SameLimit.h"
#include "authsetting/services/Services.h"
#include "authsetting/services/UserConfig.h"

#include <QSet>

#include <algorithm>
#include <utility>

namespace GW {

bool CBatchOffer::operator==(const CBatchOffer& other) const
{
    return grantee == other.grantee && keys == other.keys && isSameLimit(days, other.days);
}

bool areGrantable(const QStringList& accountKeys)
{
    const CUserConfig* user = getUserConfig();
    if (!user)
        return accountKeys.isEmpty();
    // One walk for all, because a service may walk its list for every key it is asked for.
    const QVector<boost::shared_ptr<CAccount>> accounts = user->accounts;
    QSet<QString> grantable;
    for (const boost::shared_ptr<CAccount>& account : accounts) {
        if (account && account->authType == mbservice::AUTH_TYPE_NOT_GRANTED)
            grantable.insert(account->key());
    }
    return std::all_of(accountKeys.cbegin(), accountKeys.cend(), [&](const QString& key) {
        return grantable.contains(key) && !user->isSubAccount(key) && !user->hasSubAccount(key);
    });
}

} // namespace GW
