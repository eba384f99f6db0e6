#include "backend/store/UserStore.h"

#include "backend/store/EmbeddedStore.h"
#include "backend/store/postgresql/PostgresStore.h"

namespace backend {

UserStore::~UserStore() = default;

void UserStore::noteUnwritten(const QVector<FileGrant>&, const QString&) {}

std::unique_ptr<UserStore> UserStore::create(const StoreOptions& options, qint64 userId,
                                             const QString& userName)
{
    if (options.location.isServer())
        return std::make_unique<PostgresStore>(options);
    return std::make_unique<EmbeddedStore>(options, userId, userName);
}

} // namespace backend
