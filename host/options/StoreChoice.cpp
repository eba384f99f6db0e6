#include "host/options/StoreChoice.h"

#include <QElapsedTimer>

namespace host {

std::optional<backend::StoreOptions> storeOptions(const HostOptions& options, QString* error)
{
    backend::StoreOptions store;
    if (!options.store.isEmpty()) {
        store.location = backend::StoreLocation::parse(options.store);
        if (!store.location.isValid()) {
            *error = QStringLiteral("“%1”不是存储的位置：应为文件路径或 sqlite:路径。")
                         .arg(options.store);
            return std::nullopt;
        }
    }
    if (options.clock.isValid()) {
        QElapsedTimer running;
        running.start();
        store.clock = [start = options.clock, running] {
            return start.addMSecs(running.elapsed());
        };
    }
    return store;
}

} // namespace host
