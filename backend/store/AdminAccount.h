#pragma once

#include "authsetting/services/AccountInfo.h"

#include <QString>

namespace backend {

/// One account of a store, as its administrator sees it. A value.
struct AdminAccount
{
    /// Without the owner's secret.
    mbservice::CAccountInfo account;
    QString owner;
    /// Number of the account whose sub-account it is; empty for none.
    QString parentNumber;
};

} // namespace backend
