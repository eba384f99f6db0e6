#pragma once

#include "backend/store/UserStore.h"

namespace backend {

class StoreBatch;

/// Moves grants between "prepared" and "current" for the file that carries them, inside the
/// transaction of a batch. Failures of the engine are thrown as StoreError.
class ExportOperations
{
public:
    explicit ExportOperations(StoreBatch& batch) : m_batch(batch) {}

    /// On an error the caller rolls the transaction back.
    UserStore::Exported commit(const QVector<FileGrant>& grants, bool repeat);
    void revert(const QStringList& references);
    void noteUnwritten(const QVector<FileGrant>& grants, const QString& reason);

private:
    UserStore::Exported commitOne(const FileGrant& grant, bool repeat);

    StoreBatch& m_batch;
};

} // namespace backend
