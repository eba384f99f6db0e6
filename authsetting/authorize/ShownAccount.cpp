#include "authsetting/authorize/ShownAccount.h"

#include "authsetting/services/AuthClient.h"
#include "authsetting/services/Services.h"
#include "authsetting/services/UserConfig.h"

namespace GW {

void CShownAccount::takeGrant(const CAuthDetail& grant)
{
    granted = true;
    grantee = grant.grantee;
    firstDay = grant.limit.startTime;
    lastDay = grant.limit.endTime;
}

bool CShownAccount::isTrue() const
{
    CUserConfig* user = getUserConfig();
    const auto account = user ? user->getAccountData(key) : boost::shared_ptr<CAccount>();
    if ((account ? account->authType : mbservice::AUTH_TYPE_UNKNOWN) != type)
        return false;
    CAuthClient* client = getAuthClient();
    boost::shared_ptr<CAuthDetail> grant;
    if (!client || !client->getAuthDetail(key, grant) || !grant)
        return true;
    return granted && grant->grantee == grantee && grant->limit.startTime == firstDay &&
           grant->limit.endTime == lastDay;
}

} // namespace GW
