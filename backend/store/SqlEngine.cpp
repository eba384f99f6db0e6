#include "backend/store/SqlEngine.h"

#include "backend/store/SqliteEngine.h"

namespace backend {

SqlEngine::~SqlEngine() = default;

std::unique_ptr<SqlEngine> SqlEngine::create(const StoreOptions& options)
{
    if (options.location.isValid() && options.location.engine == QStringLiteral("sqlite"))
        return std::make_unique<SqliteEngine>(options);
    return nullptr;
}

} // namespace backend
