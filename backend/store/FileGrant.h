#pragma once

#include "authsetting/services/AuthLimit.h"

#include <QString>

namespace backend {

/// What the store needs to know of one grant that goes into or comes out of a file.
struct FileGrant
{
    QString reference;
    QString grantee;
    /// The account's key (GW::genAccountKeyQs).
    QString accountKey;
    /// The account as the file's maker calls it, for messages.
    QString accountName;
    GW::CAuthLimit limit;
};

} // namespace backend
