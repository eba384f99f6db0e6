#include "backend/config/Config.h"

namespace backend {

namespace {

mbservice::CPlatformInfo lookUp(const QMap<int, mbservice::CPlatformInfo>& platforms,
                                int platformId)
{
    return platforms.value(platformId, mbservice::CPlatformInfo{platformId, {}});
}

QMap<int, mbservice::CPlatformInfo> byId(const QVector<mbservice::CPlatformInfo>& platforms)
{
    QMap<int, mbservice::CPlatformInfo> map;
    for (const mbservice::CPlatformInfo& platform : platforms)
        map.insert(platform.platformId, platform);
    return map;
}

} // namespace

mbservice::CPlatformInfo ClientConfig::getPlatformSetting(int platformId) const
{
    return lookUp(platforms, platformId);
}

mbservice::CPlatformInfo ClientConfig::getStkPlatformSetting(int platformId) const
{
    return lookUp(stkPlatforms, platformId);
}

void ClientConfig::setPlatforms(const QVector<mbservice::CPlatformInfo>& futures,
                                const QVector<mbservice::CPlatformInfo>& stock)
{
    platforms = byId(futures);
    stkPlatforms = byId(stock);
}

} // namespace backend
