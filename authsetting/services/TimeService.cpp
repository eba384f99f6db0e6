#include "authsetting/services/TimeService.h"

namespace GW {

CTimeService::CTimeService() = default;
CTimeService::~CTimeService() = default;

} // namespace GW
