#pragma once

#include "backend/store/StoreRequest.h"

#include <QString>
#include <QVariant>

namespace backend {

/// One result signal to be emitted.
struct ClientResult
{
    StoreRequest::Kind kind = StoreRequest::Kind::CheckUser;
    quint64 number = 0;
    QString user;
    mbservice::CAccountInfo account;
    GW::CAuthLimit limit;
    QVariant tag;
    bool flag = false;
    bool ok = false;
    QString error;
    /// The new grant's reference, the account's secret or the password digest that was sent.
    QString text;
    /// The account's key, of a redeemed or refused grant.
    QString key;
};

} // namespace backend
