#pragma once

#include "backend/store/StoreReply.h"
#include "backend/store/StoreRequest.h"

#include <QString>

namespace backend {

class StoreBatch;

/// Makes, prepares and cancels grants and redeems files, inside the transaction of a batch; every
/// rule is judged here. Failures of the engine are thrown as StoreError.
class GrantOperations
{
public:
    explicit GrantOperations(StoreBatch& batch) : m_batch(batch) {}

    StoreReply add(const StoreRequest& request);
    StoreReply cancel(const StoreRequest& request);
    StoreReply checkUser(const StoreRequest& request);
    StoreReply redeem(const StoreRequest& request);

private:
    QString redeemOne(const FileGrant& grant, StoreReply& reply);

    StoreBatch& m_batch;
};

/// A new reference: 128 random bits, 32 hexadecimal digits.
QString newGrantReference();

} // namespace backend
