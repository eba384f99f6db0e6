#include "backend/store/Environment.h"

#include "backend/store/Database.h"

namespace backend {

namespace {

constexpr int stockKind = 2;

} // namespace

void Environment::addPlatform(bool isStock, const mbservice::CPlatformInfo& platform)
{
    (isStock ? stockPlatforms : futuresPlatforms).append(platform);
}

void Environment::addBroker(bool isStock, const mbservice::CBrokerInfo& broker)
{
    (isStock ? stockBrokers : futuresBrokers).append(broker);
}

Environment Environment::read(Database& database)
{
    Environment environment;
    {
        Statement row = database.statement("platforms.all");
        row.run();
        while (row.next())
            environment.addPlatform(row.number(0) == stockKind, {row.number(1), row.bytes(2)});
    }
    Statement row = database.statement("brokers.all");
    row.run();
    while (row.next()) {
        environment.addBroker(row.number(0) == stockKind,
                              {row.number(1), row.bytes(2), row.bytes(3)});
    }
    return environment;
}

} // namespace backend
