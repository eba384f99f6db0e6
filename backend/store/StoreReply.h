#pragma once

#include <QString>
#include <QVector>

namespace backend {

/// What became of one request. Exactly one per request.
struct StoreReply
{
    struct RedeemedAccount
    {
        QString key;
        /// The owner's secret, which redeeming discloses.
        QString secret;
    };

    bool ok = false;
    /// The reason of a refusal or failure, in Chinese.
    QString error;
    /// Of a new grant.
    QString reference;
    /// Accounts that a file gave; they hold also when others of the file were refused.
    QVector<RedeemedAccount> redeemed;
    /// The first account of a file that was refused.
    QString refusedKey;

    static StoreReply accepted() { return {true, {}, {}, {}, {}}; }
    static StoreReply refused(const QString& error) { return {false, error, {}, {}, {}}; }
};

} // namespace backend
