#include "authsetting/services/UserConfig.h"

namespace GW {

CUserConfig::CUserConfig() = default;
CUserConfig::~CUserConfig() = default;

} // namespace GW
