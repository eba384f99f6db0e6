#pragma once

#include "authsetting/authorize/SameLimit.h"

#include <QString>

namespace GW {

/// A grant of one account as its tab shows it to the user. A value.
struct CSingleAccountOffer
{
    QString accountKey;
    QString grantee;
    CAuthLimit limit;

    bool operator==(const CSingleAccountOffer& other) const
    {
        return accountKey == other.accountKey && grantee == other.grantee &&
               isSameLimit(limit, other.limit);
    }
};

} // namespace GW
