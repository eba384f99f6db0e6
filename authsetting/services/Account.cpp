#include "authsetting/services/Account.h"

#include "authsetting/services/AccountKey.h"

namespace GW {

CAccount::CAccount(const mbservice::CAccountInfo& info) : CAccountInfo(info) {}

QString CAccount::key() const
{
    return genAccountKeyQs(*this);
}

QString CAccount::authTypeString() const
{
    return authTypeToString(authType, QString());
}

} // namespace GW
