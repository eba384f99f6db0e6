#include "benchmarks/support/FilledStore.h"

#include "backend/store/StoreAdmin.h"

#include <QtDebug>

namespace bench {

namespace {

constexpr int platformId = 1;
constexpr char brokerId[] = "8000";

} // namespace

QString grantorName()
{
    return QStringLiteral("grantor");
}

QString granteeName()
{
    return QStringLiteral("grantee");
}

void fillStore(const backend::StoreOptions& options, int accounts)
{
    QString error;
    const auto admin = backend::StoreAdmin::open(options, &error);
    if (!admin)
        qFatal("the store cannot be made: %s", qPrintable(error));
    using Kind = backend::StoreAdmin::Kind;
    const QString password = QStringLiteral("password");
    admin->addPlatform(Kind::Futures, {platformId, "平台"});
    admin->addBroker(Kind::Futures, {platformId, brokerId, "经纪公司"});
    admin->addUser(grantorName(), password);
    admin->addSubUser(grantorName(), granteeName(), password);
    for (int number = 0; number < accounts; ++number) {
        mbservice::CAccountInfo account;
        account.accountType = 1;
        account.platformId = platformId;
        account.brokerId = brokerId;
        account.accountId = std::to_string(600000000 + number);
        account.accountPrivate = "secret" + std::to_string(number);
        admin->addAccount(grantorName(), account);
    }
    if (!admin->commit())
        qFatal("the store cannot be filled: %s", qPrintable(admin->error()));
}

backend::StoreOptions makeFilledStore(const QString& folder, int accounts)
{
    backend::StoreOptions options;
    options.location = backend::StoreLocation::parse(folder + QStringLiteral("/store/bench.db"));
    // Only filling and signing in become cheap, which no case measures.
    options.cheapCryptographyForTests = true;
    fillStore(options, accounts);
    return options;
}

} // namespace bench
