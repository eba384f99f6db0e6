#pragma once

#include "authsetting/services/AccountInfo.h"
#include "authsetting/services/AuthLimit.h"

#include <QString>

namespace GW {

/// A grant that the user prepared in the table of a restricted user.
struct CPendingGrant
{
    mbservice::CAccountInfo account;
    CAuthLimit limit;
    /// The text that the result of the request brought, empty until one came.
    QString result;
};

} // namespace GW
