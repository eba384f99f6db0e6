#pragma once

#include "backend/store/StoreReply.h"
#include "backend/store/StoreRequest.h"

#include <QHash>
#include <QString>

namespace backend {

class StoreBatch;

/// Password changes of sub-users that failed, by name, with the number of the failed request.
using FailedPasswords = QHash<QString, quint64>;

/// Changes of the users whom a user manages, inside the transaction of a batch. Failures of the
/// engine are thrown as StoreError.
class SubUserOperations
{
public:
    SubUserOperations(StoreBatch& batch, FailedPasswords& failedPasswords)
        : m_batch(batch), m_failedPasswords(failedPasswords)
    {
    }

    /// Enabling is refused when it was asked for together with a password that could not be set.
    StoreReply setEnabled(const StoreRequest& request);
    /// `hash` is the password hash of the request's digest, empty when it could not be made.
    StoreReply setPassword(const StoreRequest& request, const QString& hash);

private:
    QString problem(const QString& name, int* index) const;
    StoreReply refuse(const QString& error, const char* action, qint64 subUserId);

    StoreBatch& m_batch;
    FailedPasswords& m_failedPasswords;
};

} // namespace backend
