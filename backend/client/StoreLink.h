#pragma once

#include "backend/store/UserStore.h"

namespace backend {

/// The store's part in writing an authorization file, answered before the call returns.
class StoreLink
{
public:
    virtual UserStore::Exported commitExport(const QVector<FileGrant>& grants, bool repeat) = 0;
    virtual void revertExport(const QStringList& references) = 0;

protected:
    ~StoreLink() = default;
};

} // namespace backend
