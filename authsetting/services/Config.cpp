#include "authsetting/services/Config.h"

namespace GW {

CConfig::CConfig() = default;
CConfig::~CConfig() = default;

} // namespace GW
