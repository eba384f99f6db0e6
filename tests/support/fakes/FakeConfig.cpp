#include "tests/support/fakes/FakeConfig.h"

mbservice::CPlatformInfo FakeConfig::getPlatformSetting(int platformId) const
{
    return platforms.value(platformId);
}

mbservice::CPlatformInfo FakeConfig::getStkPlatformSetting(int platformId) const
{
    return stkPlatforms.value(platformId);
}

void FakeConfig::addPlatform(int platformId, const QString& name)
{
    platforms.insert(platformId, {platformId, name.toStdString()});
}

void FakeConfig::addStkPlatform(int platformId, const QString& name)
{
    stkPlatforms.insert(platformId, {platformId, name.toStdString()});
}
