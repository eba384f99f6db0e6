#include "admin/command/StoreListing.h"

#include "admin/csv/CsvReader.h"
#include "utils/ExchangeTimeZone.h"

#include <QDateTime>

namespace admin {

namespace {

QString yesNo(bool value)
{
    return value ? QStringLiteral("1") : QStringLiteral("0");
}

QString dayText(qint32 seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds, utils::exchangeTimeZone())
        .date()
        .toString(Qt::ISODate);
}

QString kindText(int type)
{
    return type == 1   ? QStringLiteral("futures")
           : type == 2 ? QStringLiteral("stock")
                       : QString::number(type);
}

QStringList identity(const mbservice::CAccountInfo& account)
{
    return {QString::number(account.platformId), QString::fromStdString(account.brokerId),
            QString::number(account.accountSubType), QString::fromStdString(account.accountId)};
}

QStringList users(const backend::StoreAdmin& store)
{
    QStringList lines{QStringLiteral("owner,name,enabled")};
    const auto found = store.users();
    for (const backend::AdminUser& user : found)
        lines.append(csvLine({user.owner, user.name, yesNo(user.enabled)}));
    return lines;
}

QStringList accounts(const backend::StoreAdmin& store)
{
    QStringList lines{
        QStringLiteral("owner,type,platform_id,broker_id,sub_type,number,alias,parent_number")};
    const auto found = store.accounts();
    for (const backend::AdminAccount& entry : found) {
        lines.append(csvLine(
            QStringList{entry.owner, kindText(entry.account.accountType)} +
            identity(entry.account) +
            QStringList{QString::fromStdString(entry.account.accountAlias), entry.parentNumber}));
    }
    return lines;
}

QStringList grants(const backend::StoreAdmin& store)
{
    const QStringList states{QStringLiteral("prepared"), QStringLiteral("current"),
                             QStringLiteral("cancelled"), QStringLiteral("expired")};
    QStringList lines{QStringLiteral("reference,grantor,grantee,platform_id,broker_id,sub_type,"
                                     "number,first_day,last_day,ratio,source,state,redeemed")};
    const auto found = store.grants();
    for (const backend::GrantRecord& grant : found) {
        const QString ratio = grant.limit.hasMarginRatio()
                                  ? QString::number(grant.limit.availableMarginRatio, 'g', 6)
                                  : QString();
        const QString source = grant.source == backend::GrantSource::File
                                   ? QStringLiteral("file")
                                   : QStringLiteral("server");
        lines.append(csvLine(
            QStringList{grant.reference, grant.grantor, grant.grantee} + identity(grant.account) +
            QStringList{dayText(grant.limit.startTime), dayText(grant.limit.endTime), ratio, source,
                        states.value(static_cast<int>(grant.state) - 1), yesNo(grant.redeemed)}));
    }
    return lines;
}

} // namespace

QStringList listing(const QString& what, const backend::StoreAdmin& store)
{
    if (what == QStringLiteral("users"))
        return users(store);
    if (what == QStringLiteral("accounts"))
        return accounts(store);
    return grants(store);
}

} // namespace admin
