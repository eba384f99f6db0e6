#include "host/options/StoreChoice.h"

#include <QElapsedTimer>
#include <QStandardPaths>

namespace host {

std::optional<backend::StoreOptions> storeOptions(const HostOptions& options, QString* error)
{
    backend::StoreOptions store;
    if (!options.store.isEmpty()) {
        QString reason;
        store.location = backend::StoreLocation::parse(options.store, &reason);
        if (!store.location.isValid()) {
            *error = QStringLiteral("“%1”不是存储的位置：%2").arg(options.store, reason);
            return std::nullopt;
        }
        if (store.location.isServer()) {
            store.dataFolder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
                               QStringLiteral("/users");
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
