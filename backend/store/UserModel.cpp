#include "backend/store/UserModel.h"

#include <algorithm>

namespace backend {

int UserModel::subUserIndex(const QString& name) const
{
    for (int i = 0; i < subUsers.size(); ++i) {
        if (subUsers[i].name == name)
            return i;
    }
    return -1;
}

bool UserModel::isOtherOn(const QDate& day) const
{
    if (day == today)
        return false;
    const auto ended = [&](const ModelAccount& account) {
        return !account.grant.isNull() && account.grant.lastDay < day;
    };
    const auto begun = [&](const ModelAccount& account) {
        return account.grant.firstDay > today && account.grant.firstDay <= day;
    };
    return day < today || std::any_of(own.cbegin(), own.cend(), ended) ||
           std::any_of(received.cbegin(), received.cend(), [&](const ModelAccount& account) {
               return ended(account) || begun(account);
           });
}

} // namespace backend
