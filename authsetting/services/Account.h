#pragma once

#include "authsetting/AuthSettingExport.h"
#include "authsetting/services/AccountInfo.h"
#include "authsetting/services/AuthType.h"

#include <QString>

namespace GW {

/// One of the accounts that the logged-in user sees: his own and those granted to him.
/// Held through boost::shared_ptr<CAccount>.
class AUTHSETTING_EXPORT CAccount : public mbservice::CAccountInfo
{
public:
    CAccount() = default;
    explicit CAccount(const mbservice::CAccountInfo& info);

    /// The account key, equal to genAccountKeyQs() of this record.
    QString key() const;

    /// Display text of `authType`.
    QString authTypeString() const;

    mbservice::EAuthType authType = mbservice::AUTH_TYPE_UNKNOWN;
};

} // namespace GW
