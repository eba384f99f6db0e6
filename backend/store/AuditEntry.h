#pragma once

#include <QDateTime>
#include <QString>

namespace backend {

/// One line of the audit trail, as its reader sees it. It never holds a password or an account's
/// secret.
struct AuditEntry
{
    /// Strictly growing with time within one store.
    qint64 id = 0;
    /// In the exchange time zone.
    QDateTime when;
    /// The user who acted; empty when the system acted by itself (an expired grant) or for its
    /// administrator.
    QString actor;
    /// What was done: "sign_in", "grant", "prepare", "export", "cancel", "redeem", "expire",
    /// "sub_user_state", "sub_user_password", "admin_state", "admin_password".
    QString action;
    /// The user to whom it was done, empty without one.
    QString otherUser;
    /// The account as its owner calls it, empty without one.
    QString account;
    /// Further circumstances such as the days of a grant, ready to show.
    QString detail;
    bool ok = false;
    /// The reason of a failure, ready to show; empty after a success.
    QString error;

    /// The Chinese name of `action`.
    QString actionText() const;
};

} // namespace backend
