#pragma once

#include "authsetting/services/AccountInfo.h"
#include "backend/store/GrantRecord.h"

#include <QDate>
#include <QHash>
#include <QString>
#include <QVector>

namespace backend {

/// The current grant of an account, as the user on either side needs it.
struct CurrentGrant
{
    /// 0 = there is none.
    qint64 id = 0;
    QString reference;
    /// The grantee of an own account, the grantor of a received one.
    qint64 otherId = 0;
    QString otherName;
    QDate firstDay;
    QDate lastDay;
    double ratio = GW::CAuthLimit::noMarginRatio;
    GrantSource source = GrantSource::Server;

    bool isNull() const { return id == 0; }
};

/// One account that a user sees.
struct ModelAccount
{
    qint64 id = 0;
    QString key;
    mbservice::CAccountInfo info;
    bool isSubAccount = false;
    bool hasSubAccount = false;
    CurrentGrant grant;
};

/// One user whom the user manages.
struct ModelSubUser
{
    qint64 id = 0;
    QString name;
    bool enabled = false;
};

/// Everything that one user may know of the store, exactly as the store has it at `version`. A
/// value; it belongs to the thread that talks to the store.
struct UserModel
{
    qint64 userId = 0;
    QString userName;
    bool enabled = false;
    qint64 version = -1;
    /// The day on which it was read; grants that ended before it count as ended.
    QDate today;
    /// Whether a grant that has ended is still written as current in the store.
    bool hasOverdue = false;

    QVector<ModelAccount> own;
    QVector<ModelAccount> received;
    QVector<ModelSubUser> subUsers;
    QHash<QString, int> ownByKey;

    /// -1 when the user has no such account.
    int ownIndex(const QString& key) const { return ownByKey.value(key, -1); }
    /// -1 when he manages no such user.
    int subUserIndex(const QString& name) const;
    /// Whether what he sees is another on `day` than on the day of the reading.
    bool isOtherOn(const QDate& day) const;
};

} // namespace backend
