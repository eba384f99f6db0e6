#pragma once

#include "backend/store/ExchangeDays.h"
#include "backend/store/StoreReply.h"
#include "backend/store/StoreRequest.h"
#include "backend/store/UserStore.h"

#include <QJsonObject>

namespace backend {

/// Turns requests into what the server's functions take, and their answers into replies. One
/// thread.
class RequestJson
{
public:
    /// Why a request must not even be sent, in Chinese; empty when it may be. Such a request leaves
    /// no trace anywhere.
    static QString problem(const StoreRequest& request);

    /// `verifier` stands for the password of a password change, empty when there is no usable one;
    /// `passwordFailed` tells that the user's last password change is known to have failed.
    QJsonObject request(const StoreRequest& request, const QString& verifier, bool passwordFailed);
    StoreReply reply(const StoreRequest& request, const QJsonObject& answer) const;

    QJsonObject exported(const FileGrant& grant);
    UserStore::Exported exported(const QJsonObject& answer) const;

private:
    static void addAccount(const mbservice::CAccountInfo& account, QJsonObject& object);
    void addLimit(const GW::CAuthLimit& limit, QJsonObject& object);
    QString dayText(qint32 seconds);
    StoreReply redeemed(const StoreRequest& request, const QJsonObject& answer) const;

    ExchangeDays m_days;
    QHash<qint32, QString> m_dayTexts;
};

} // namespace backend
