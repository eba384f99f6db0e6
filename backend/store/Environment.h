#pragma once

#include "authsetting/services/BrokerInfo.h"
#include "authsetting/services/PlatformInfo.h"

#include <QVector>

namespace backend {

class Database;

/// The platforms and brokers of a store, futures and stock apart.
struct Environment
{
    QVector<mbservice::CPlatformInfo> futuresPlatforms;
    QVector<mbservice::CPlatformInfo> stockPlatforms;
    QVector<mbservice::CBrokerInfo> futuresBrokers;
    QVector<mbservice::CBrokerInfo> stockBrokers;

    void addPlatform(bool isStock, const mbservice::CPlatformInfo& platform);
    void addBroker(bool isStock, const mbservice::CBrokerInfo& broker);

    /// Failures are thrown as StoreError.
    static Environment read(Database& database);
};

} // namespace backend
