#pragma once

#include "authsetting/services/Config.h"

#include <QVector>

namespace backend {

/// The client's trading platforms, fed by the client. GUI thread only.
class ClientConfig final : public GW::CConfig
{
public:
    mbservice::CPlatformInfo getPlatformSetting(int platformId) const override;
    mbservice::CPlatformInfo getStkPlatformSetting(int platformId) const override;

    /// Puts these futures and stock platforms in the place of those known so far.
    void setPlatforms(const QVector<mbservice::CPlatformInfo>& futures,
                      const QVector<mbservice::CPlatformInfo>& stock);
};

} // namespace backend
