#pragma once

#include "authsetting/services/AuthType.h"

#include <QString>

namespace GW {

class CAuthDetail;

/// What a page shows of an account's state, to be compared with the services' later. A value.
struct CShownAccount
{
    QString key;
    mbservice::EAuthType type = mbservice::AUTH_TYPE_UNKNOWN;
    bool granted = false;
    QString grantee;
    int firstDay = 0;
    int lastDay = 0;

    void takeGrant(const CAuthDetail& grant);
    /// Whether the account is still in this state. A grant that the service no longer knows says
    /// nothing: there is nothing that could be mistaken for it.
    bool isTrue() const;
};

} // namespace GW
