#pragma once

#include "authsetting/services/AccountInfo.h"
#include "authsetting/services/AuthLimit.h"
#include "backend/store/FileGrant.h"

#include <QString>
#include <QVector>

namespace backend {

/// One change or question that a user puts to the store.
struct StoreRequest
{
    enum class Kind {
        /// Grant `account` to `user`, on the server or (without `flag`) prepared for a file.
        Add,
        /// Cancel the grant of `account` to `user`.
        Cancel,
        /// May `user` receive grants?
        CheckUser,
        /// Enable (`flag`) or disable the managed user `user`.
        SetSubUser,
        /// Give the managed user `user` the password behind `digest`.
        SetPassword,
        /// Redeem `grants`, read from a file.
        Redeem,
    };

    Kind kind = Kind::CheckUser;
    QString user;
    mbservice::CAccountInfo account;
    GW::CAuthLimit limit;
    bool flag = false;
    QString digest;
    QVector<FileGrant> grants;
    /// Growing by request.
    quint64 number = 0;
    /// Number of the last request whose reply the sender knew when he sent this one.
    quint64 seen = 0;
};

} // namespace backend
