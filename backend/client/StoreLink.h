#pragma once

#include "backend/store/UserStore.h"

namespace backend {

/// The store's part in writing an authorization file, answered before the call returns.
class StoreLink
{
public:
    virtual UserStore::Exported commitExport(const QVector<FileGrant>& grants, bool repeat) = 0;
    virtual void revertExport(const QStringList& references) = 0;
    /// For the audit trail: no file was written for `grants`, for `reason` (in Chinese).
    virtual void noteUnwritten(const QVector<FileGrant>& grants, const QString& reason);

protected:
    ~StoreLink() = default;
};

inline void StoreLink::noteUnwritten(const QVector<FileGrant>&, const QString&) {}

} // namespace backend
