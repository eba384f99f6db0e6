#include "authsetting/services/MsgService.h"

namespace GW {

CMsgService::CMsgService() = default;
CMsgService::~CMsgService() = default;

} // namespace GW
