#pragma once

#include "authsetting/AuthSettingExport.h"

namespace GW {

class CAuthClient;
class CConfig;
class CMsgService;
class CTimeService;
class CUserConfig;

/// Hands the host's service objects to the dialog; any of them may be null, and what would need it
/// is then left out. Call it on the GUI thread before the first dialog is constructed, and again
/// only while no dialog exists (for another user, or with nulls before the services die).
///
/// The dialog never owns a service: each must outlive every dialog constructed while it is
/// installed.
AUTHSETTING_EXPORT void installServices(CAuthClient* authClient, CUserConfig* userConfig,
                                        CConfig* config, CMsgService* msgService,
                                        CTimeService* timeService);

/// The installed services; null while none is installed. GUI thread only.
AUTHSETTING_EXPORT CAuthClient* getAuthClient();
AUTHSETTING_EXPORT CUserConfig* getUserConfig();
AUTHSETTING_EXPORT CConfig* getConfig();
AUTHSETTING_EXPORT CMsgService* getMsgService();
AUTHSETTING_EXPORT CTimeService* getTimeService();

} // namespace GW
