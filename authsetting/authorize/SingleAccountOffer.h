#pragma once

#include "authsetting/services/AuthLimit.h"

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
               limit.startTime == other.limit.startTime && limit.endTime == other.limit.endTime &&
               limit.hasMarginRatio() == other.limit.hasMarginRatio() &&
               (!limit.hasMarginRatio() ||
                qFuzzyCompare(limit.availableMarginRatio, other.limit.availableMarginRatio));
    }
};

} // namespace GW
