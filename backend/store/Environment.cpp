#include "backend/store/Environment.h"

#include "backend/store/Database.h"

namespace backend {

namespace {

constexpr int stockKind = 2;

} // namespace

Environment Environment::read(Database& database)
{
    Environment environment;
    {
        Statement row = database.statement("platforms.all");
        row.run();
        while (row.next()) {
            auto& platforms = row.number(0) == stockKind ? environment.stockPlatforms
                                                         : environment.futuresPlatforms;
            platforms.append({row.number(1), row.bytes(2)});
        }
    }
    Statement row = database.statement("brokers.all");
    row.run();
    while (row.next()) {
        auto& brokers =
            row.number(0) == stockKind ? environment.stockBrokers : environment.futuresBrokers;
        brokers.append({row.number(1), row.bytes(2), row.bytes(3)});
    }
    return environment;
}

} // namespace backend
