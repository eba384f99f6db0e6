#pragma once

#include "authsetting/AuthSettingExport.h"
#include "authsetting/services/MsgLevel.h"
#include "authsetting/services/MsgType.h"

#include <QString>

namespace GW {

/// The client's per-account message area. GUI thread only.
class AUTHSETTING_EXPORT CMsgService
{
public:
    CMsgService();
    CMsgService(const CMsgService&) = delete;
    CMsgService& operator=(const CMsgService&) = delete;
    virtual ~CMsgService();

    /// Shows `text` among the messages of the account behind `accountKey`. Returns 0 when shown;
    /// the dialog goes on in any case.
    virtual int showAccountMsg(QString text, QString accountKey, EMsgTypeDef type,
                               mbservice::MsgLevel level) = 0;
};

} // namespace GW
