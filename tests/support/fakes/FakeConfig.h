#pragma once

#include "authsetting/services/Config.h"

#include <QString>

/// Platforms that a test fills by hand.
class FakeConfig : public GW::CConfig
{
public:
    mbservice::CPlatformInfo getPlatformSetting(int platformId) const override;
    mbservice::CPlatformInfo getStkPlatformSetting(int platformId) const override;

    void addPlatform(int platformId, const QString& name);
    void addStkPlatform(int platformId, const QString& name);
};
