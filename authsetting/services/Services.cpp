#include "authsetting/services/Services.h"

namespace GW {

namespace {

struct InstalledServices
{
    CAuthClient* authClient = nullptr;
    CUserConfig* userConfig = nullptr;
    CConfig* config = nullptr;
    CMsgService* msgService = nullptr;
    CTimeService* timeService = nullptr;
};

InstalledServices installed;

} // namespace

void installServices(CAuthClient* authClient, CUserConfig* userConfig, CConfig* config,
                     CMsgService* msgService, CTimeService* timeService)
{
    installed = {authClient, userConfig, config, msgService, timeService};
}

CAuthClient* getAuthClient()
{
    return installed.authClient;
}

CUserConfig* getUserConfig()
{
    return installed.userConfig;
}

CConfig* getConfig()
{
    return installed.config;
}

CMsgService* getMsgService()
{
    return installed.msgService;
}

CTimeService* getTimeService()
{
    return installed.timeService;
}

} // namespace GW
