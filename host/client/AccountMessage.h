#pragma once

#include "authsetting/services/MsgLevel.h"

#include <QDateTime>
#include <QString>

namespace host {

/// One message about an account.
struct AccountMessage
{
    /// In the exchange time zone.
    QDateTime when;
    QString accountKey;
    QString text;
    mbservice::MsgLevel level = mbservice::MSG_LEVEL_INFO;
};

} // namespace host
