#pragma once

#include "authsetting/AuthSettingExport.h"

#include <QMetaType>

#include <string>

namespace mbservice {

/// One trading account. A value: copy it freely. Byte strings are UTF-8.
class AUTHSETTING_EXPORT CAccountInfo
{
public:
    CAccountInfo() = default;
    CAccountInfo(const CAccountInfo&) = default;
    CAccountInfo& operator=(const CAccountInfo&) = default;
    virtual ~CAccountInfo();

    /// 1 = futures account, 2 = stock account.
    qint32 accountType = 0;
    /// Key of the futures or stock platform table.
    qint32 platformId = 0;
    /// The broker within the platform.
    std::string brokerId;
    /// A further identifying number.
    qint32 accountSubType = 0;
    /// The account number.
    std::string accountId;
    /// The owner's secret for trading the account; never logged, never shown.
    std::string accountPrivate;
    /// Shown in place of `accountId` when not empty.
    std::string accountAlias;
};

/// Whether both records denote the same account: equal platform, broker, account number and
/// sub-type; the other fields play no part.
AUTHSETTING_EXPORT bool isSameAccount(const CAccountInfo& left, const CAccountInfo& right);

} // namespace mbservice

Q_DECLARE_METATYPE(mbservice::CAccountInfo)
