#pragma once

#include "authsetting/services/Config.h"

/// A host that knows one futures platform.
class HostConfig : public GW::CConfig
{
public:
    HostConfig() { platforms.insert(1, {1, "a platform"}); }

    mbservice::CPlatformInfo getPlatformSetting(int platformId) const override
    {
        return platforms.value(platformId);
    }

    mbservice::CPlatformInfo getStkPlatformSetting(int platformId) const override
    {
        return stkPlatforms.value(platformId);
    }
};
