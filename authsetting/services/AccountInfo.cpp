#include "authsetting/services/AccountInfo.h"

namespace mbservice {

CAccountInfo::~CAccountInfo() = default;

bool isSameAccount(const CAccountInfo& left, const CAccountInfo& right)
{
    return left.platformId == right.platformId && left.accountId == right.accountId &&
           left.brokerId == right.brokerId && left.accountSubType == right.accountSubType;
}

} // namespace mbservice
