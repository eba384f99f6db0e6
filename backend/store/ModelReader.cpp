#include "backend/store/ModelReader.h"

#include "authsetting/services/AccountKey.h"
#include "backend/store/Database.h"

#include <QSet>

namespace backend {

namespace {

// Columns that accounts.own and accounts.received have in common.
enum Column {
    ColumnAccountId,
    ColumnAccountType,
    ColumnPlatformId,
    ColumnBrokerId,
    ColumnAccountSubType,
    ColumnAccountNumber,
    ColumnAccountPrivate,
    ColumnAccountAlias,
    ColumnGrantId,
    ColumnReference,
    ColumnOtherId,
    ColumnOtherName,
    ColumnFirstDay,
    ColumnLastDay,
    ColumnRatio,
    ColumnSource,
};

} // namespace

bool ModelReader::readState(qint64 userId, qint64* version, bool* enabled)
{
    Statement row = m_database.statement("users.state");
    if (!row.run(userId).next())
        return false;
    *version = row.integer(0);
    *enabled = row.flag(1);
    return true;
}

ModelAccount ModelReader::account(Statement& row) const
{
    ModelAccount account;
    account.id = row.integer(ColumnAccountId);
    account.info.accountType = row.number(ColumnAccountType);
    account.info.platformId = row.number(ColumnPlatformId);
    account.info.brokerId = row.bytes(ColumnBrokerId);
    account.info.accountSubType = row.number(ColumnAccountSubType);
    account.info.accountId = row.bytes(ColumnAccountNumber);
    account.info.accountPrivate = row.bytes(ColumnAccountPrivate);
    account.info.accountAlias = row.bytes(ColumnAccountAlias);
    account.key = GW::genAccountKeyQs(account.info);
    return account;
}

CurrentGrant ModelReader::grant(Statement& row) const
{
    CurrentGrant grant;
    if (row.isNull(ColumnGrantId))
        return grant;
    grant.id = row.integer(ColumnGrantId);
    grant.reference = row.text(ColumnReference);
    grant.otherId = row.integer(ColumnOtherId);
    grant.otherName = row.text(ColumnOtherName);
    grant.firstDay = row.day(ColumnFirstDay);
    grant.lastDay = row.day(ColumnLastDay);
    if (!row.isNull(ColumnRatio))
        grant.ratio = row.real(ColumnRatio);
    grant.source = static_cast<GrantSource>(row.number(ColumnSource));
    return grant;
}

void ModelReader::readRelations(UserModel& model)
{
    QSet<qint64> parents;
    QSet<qint64> children;
    Statement row = m_database.statement("accounts.relations");
    row.run(model.userId);
    while (row.next()) {
        parents.insert(row.integer(0));
        children.insert(row.integer(1));
    }
    if (children.isEmpty())
        return;
    for (ModelAccount& account : model.own) {
        account.isSubAccount = children.contains(account.id);
        account.hasSubAccount = parents.contains(account.id);
    }
}

UserModel ModelReader::read(qint64 userId, const QString& userName, const QDate& today)
{
    UserModel model;
    model.userId = userId;
    model.userName = userName;
    model.today = today;
    if (!readState(userId, &model.version, &model.enabled))
        return model;
    {
        Statement row = m_database.statement("accounts.own");
        row.run(userId);
        while (row.next()) {
            ModelAccount own = account(row);
            own.grant = grant(row);
            if (!own.grant.isNull() && own.grant.lastDay < today) {
                own.grant = {};
                model.hasOverdue = true;
            }
            model.ownByKey.insert(own.key, static_cast<int>(model.own.size()));
            model.own.append(own);
        }
    }
    {
        Statement row = m_database.statement("accounts.received");
        const QString day = storedDay(today);
        row.run(day, userId, day);
        while (row.next()) {
            ModelAccount received = account(row);
            received.grant = grant(row);
            model.received.append(received);
        }
    }
    {
        Statement row = m_database.statement("users.sub_users");
        row.run(userId);
        while (row.next())
            model.subUsers.append({row.integer(0), row.text(1), row.flag(2)});
    }
    readRelations(model);
    return model;
}

} // namespace backend
