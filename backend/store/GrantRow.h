#pragma once

#include "backend/store/GrantRecord.h"

#include <QDate>
#include <QString>

namespace backend {

class Database;

/// One grant as it is in the store, found by its reference.
struct GrantRow
{
    qint64 id = 0;
    qint64 grantorId = 0;
    qint64 granteeId = 0;
    qint64 accountId = 0;
    QDate firstDay;
    QDate lastDay;
    double ratio = GW::CAuthLimit::noMarginRatio;
    GrantSource source = GrantSource::Server;
    GrantState state = GrantState::Prepared;
    bool redeemed = false;
    /// Owner of the account by now.
    qint64 ownerId = 0;
    QString accountKey;
    QString accountSecret;
    QString granteeName;
    bool granteeEnabled = false;

    /// False when nobody knows the reference. Failures are thrown as StoreError.
    bool read(Database& database, const QString& reference);
};

} // namespace backend
