#pragma once

#include "authsetting/AuthSettingExport.h"
#include "authsetting/services/PlatformInfo.h"

#include <QMap>

namespace GW {

/// The client's environment: the trading platforms it knows. GUI thread only.
class AUTHSETTING_EXPORT CConfig
{
public:
    CConfig();
    CConfig(const CConfig&) = delete;
    CConfig& operator=(const CConfig&) = delete;
    virtual ~CConfig();

    /// One futures platform; an empty name when unknown.
    virtual mbservice::CPlatformInfo getPlatformSetting(int platformId) const = 0;
    /// One stock platform; an empty name when unknown.
    virtual mbservice::CPlatformInfo getStkPlatformSetting(int platformId) const = 0;

    /// Futures platforms by identifier.
    QMap<int, mbservice::CPlatformInfo> platforms;
    /// Stock platforms by identifier.
    QMap<int, mbservice::CPlatformInfo> stkPlatforms;
};

} // namespace GW
