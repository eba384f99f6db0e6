#pragma once

#include "authsetting/services/AccountInfo.h"
#include "authsetting/services/AuthDetail.h"
#include "authsetting/services/AuthLimit.h"

#include <QString>
#include <QVariant>
#include <QVector>

#include <boost/shared_ptr.hpp>

namespace monkey {

/// One request or file operation that reached the client, and what became of it.
struct Call
{
    enum Kind { Grant, Cancel, Check, SetUser, Password, Export, Import };

    Kind kind = Grant;
    /// Grantee or sub-user.
    QString user;
    mbservice::CAccountInfo account;
    GW::CAuthLimit limit;
    QVariant tag;
    bool toServer = false;
    bool enable = false;
    /// Password of a file, digest of a sub-user's password.
    QString password;
    QString path;
    QVector<boost::shared_ptr<GW::CAuthDetail>> grants;

    /// The client's own state when the request came: the account was free, the sub-user enabled.
    bool wasFree = false;
    bool wasEnabled = false;

    bool isOpen = false;
    bool isForgotten = false;
    bool isGranted = false;
    QString ref;
};

} // namespace monkey
