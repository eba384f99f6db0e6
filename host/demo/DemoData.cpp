#include "host/demo/DemoData.h"

#include "backend/store/StoreAdmin.h"
#include "host/demo/DemoAccount.h"
#include "host/demo/DemoGrant.h"
#include "kit/dates/DateConversions.h"

namespace host {

namespace {

using Kind = backend::StoreAdmin::Kind;

struct DemoPlatform
{
    Kind kind;
    int id;
    const char* name;
};

const DemoPlatform platforms[] = {
    {Kind::Futures, 1, "云岭交易通道"}, {Kind::Futures, 2, "海川极速柜台"},
    {Kind::Futures, 3, "北渚夜盘通道"}, {Kind::Stock, 11, "青禾证券柜台"},
    {Kind::Stock, 12, "松涛集中交易"},
};

struct DemoBroker
{
    Kind kind;
    int platformId;
    const char* id;
    const char* name;
};

const DemoBroker brokers[] = {
    {Kind::Futures, 1, "0101", "远山期货"}, {Kind::Futures, 1, "0102", "望川期货"},
    {Kind::Futures, 2, "0201", "远山期货"}, {Kind::Futures, 2, "0205", "青岚期货"},
    {Kind::Futures, 3, "0301", "拾光期货"}, {Kind::Stock, 11, "8801", "临江证券"},
    {Kind::Stock, 11, "8802", "云麓证券"},  {Kind::Stock, 12, "9001", "临江证券"},
};

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

qint32 dayInSeconds(const QDate& day)
{
    return KZ::qDateTimeToSecond(KZ::exchangeDayStart(day));
}

bool addGrant(backend::StoreAdmin& store, const DemoGrant& grant, const QDate& today)
{
    const DemoAccount* account = DemoAccount::find(grant.accountId);
    if (!account)
        return false;
    backend::GrantRecord record;
    record.grantor = text(account->owner);
    record.grantee = text(grant.grantee);
    record.account = account->info();
    record.limit.startTime = dayInSeconds(today.addDays(grant.firstDay));
    record.limit.endTime = dayInSeconds(today.addDays(grant.lastDay));
    if (grant.marginRatio > 0.0)
        record.limit.availableMarginRatio = grant.marginRatio;
    record.source = grant.source;
    record.state = grant.state;
    record.redeemed = grant.redeemed;
    return store.addGrant(record);
}

bool addUsers(backend::StoreAdmin& store)
{
    for (const QString& user : {DemoData::mainUser(), DemoData::partner(), DemoData::colleague()}) {
        if (!store.addUser(user, DemoData::password()))
            return false;
    }
    const QString owner = DemoData::mainUser();
    return store.addSubUser(owner, DemoData::dayTrader(), DemoData::password()) &&
           store.addSubUser(owner, DemoData::nightTrader(), DemoData::password()) &&
           store.addSubUser(owner, DemoData::disabledTrader(), DemoData::password(), false) &&
           store.addSubUser(DemoData::partner(), QStringLiteral("zhao.assist"),
                            DemoData::password());
}

bool addMarkets(backend::StoreAdmin& store)
{
    for (const DemoPlatform& platform : platforms) {
        if (!store.addPlatform(platform.kind, {platform.id, platform.name}))
            return false;
    }
    for (const DemoBroker& broker : brokers) {
        if (!store.addBroker(broker.kind, {broker.platformId, broker.id, broker.name}))
            return false;
    }
    return true;
}

bool addAccounts(backend::StoreAdmin& store)
{
    for (const DemoAccount& account : DemoAccount::all()) {
        if (!store.addAccount(text(account.owner), account.info()))
            return false;
    }
    for (const DemoAccount& account : DemoAccount::all()) {
        if (!account.parentId)
            continue;
        const DemoAccount* parent = DemoAccount::find(account.parentId);
        if (!parent || !store.addSubAccount(parent->info(), account.info()))
            return false;
    }
    return true;
}

} // namespace

QString DemoData::mainUser()
{
    return QStringLiteral("lin.yuan");
}

QString DemoData::partner()
{
    return QStringLiteral("zhao.ke");
}

QString DemoData::colleague()
{
    return QStringLiteral("chen.mu");
}

QString DemoData::dayTrader()
{
    return QStringLiteral("lin.day");
}

QString DemoData::nightTrader()
{
    return QStringLiteral("lin.night");
}

QString DemoData::disabledTrader()
{
    return QStringLiteral("lin.intern");
}

QVector<QString> DemoData::users()
{
    return {mainUser(), partner(), colleague(), dayTrader(), nightTrader(), disabledTrader()};
}

QString DemoData::password()
{
    return QStringLiteral("yanshi2468");
}

bool DemoData::fill(backend::StoreAdmin& store, const QDate& today)
{
    if (!addUsers(store) || !addMarkets(store) || !addAccounts(store))
        return false;
    for (const DemoGrant& grant : DemoGrant::all()) {
        if (!addGrant(store, grant, today))
            return false;
    }
    return true;
}

} // namespace host
