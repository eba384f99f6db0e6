#include "backend/store/postgresql/ServerModelReader.h"

#include "authsetting/services/AccountKey.h"

#include <QSqlQuery>
#include <QVariant>

#include <algorithm>

namespace backend {

namespace {

enum Side { SideHeader = 0, SideOwn = 1, SideReceived = 2, SideSubUser = 3 };

enum Column {
    ColumnSide,
    ColumnVersion,
    ColumnEnabled,
    ColumnToday,
    ColumnHasOverdue,
    ColumnIsFull,
    ColumnAccountId,
    ColumnAccountType,
    ColumnPlatformId,
    ColumnBrokerId,
    ColumnAccountSubType,
    ColumnAccountNumber,
    ColumnAccountPrivate,
    ColumnAccountAlias,
    ColumnIsSubAccount,
    ColumnHasSubAccount,
    ColumnReference,
    ColumnOtherId,
    ColumnOtherName,
    ColumnFirstDay,
    ColumnLastDay,
    ColumnRatio,
    ColumnSource,
    ColumnIsCurrent,
};

std::string bytes(const QSqlQuery& row, int column)
{
    return row.value(column).toString().toStdString();
}

CurrentGrant grantOf(const QSqlQuery& row, qint64 accountId)
{
    CurrentGrant grant;
    if (row.isNull(ColumnReference))
        return grant;
    // An account has one current grant, so it does for the grant's own number, which nobody needs.
    grant.id = accountId;
    grant.reference = row.value(ColumnReference).toString();
    grant.otherId = row.value(ColumnOtherId).toLongLong();
    grant.otherName = row.value(ColumnOtherName).toString();
    grant.firstDay = row.value(ColumnFirstDay).toDate();
    grant.lastDay = row.value(ColumnLastDay).toDate();
    if (!row.isNull(ColumnRatio))
        grant.ratio = row.value(ColumnRatio).toDouble();
    grant.source = static_cast<GrantSource>(row.value(ColumnSource).toInt());
    return grant;
}

ModelAccount accountOf(const QSqlQuery& row)
{
    ModelAccount account;
    account.id = row.value(ColumnAccountId).toLongLong();
    account.info.accountType = row.value(ColumnAccountType).toInt();
    account.info.platformId = row.value(ColumnPlatformId).toInt();
    account.info.brokerId = bytes(row, ColumnBrokerId);
    account.info.accountSubType = row.value(ColumnAccountSubType).toInt();
    account.info.accountId = bytes(row, ColumnAccountNumber);
    account.info.accountPrivate = bytes(row, ColumnAccountPrivate);
    account.info.accountAlias = bytes(row, ColumnAccountAlias);
    account.key = GW::genAccountKeyQs(account.info);
    account.isSubAccount = row.value(ColumnIsSubAccount).toBool();
    account.hasSubAccount = row.value(ColumnHasSubAccount).toBool();
    account.grant = grantOf(row, account.id);
    return account;
}

bool sameSubUsers(const QVector<ModelSubUser>& left, const QVector<ModelSubUser>& right)
{
    return std::equal(left.cbegin(), left.cend(), right.cbegin(), right.cend(),
                      [](const ModelSubUser& a, const ModelSubUser& b) {
                          return a.id == b.id && a.name == b.name && a.enabled == b.enabled;
                      });
}

} // namespace

QString ServerModelReader::columns()
{
    return QStringLiteral("side, version, enabled, today, has_overdue, is_full, account_id,"
                          " account_type, platform_id, broker_id, account_sub_type, account_number,"
                          " account_private, account_alias, is_sub_account, has_sub_account,"
                          " reference, other_id, other_name, first_day, last_day, ratio, source,"
                          " is_current");
}

void ServerModelReader::add(const QSqlQuery& row)
{
    switch (row.value(ColumnSide).toInt()) {
    case SideHeader:
        m_fresh.userId = m_model.userId;
        m_fresh.userName = m_model.userName;
        m_fresh.version = row.value(ColumnVersion).toLongLong();
        m_fresh.enabled = row.value(ColumnEnabled).toBool();
        m_fresh.today = row.value(ColumnToday).toDate();
        m_fresh.hasOverdue = row.value(ColumnHasOverdue).toBool();
        m_changes.all = row.value(ColumnIsFull).toBool();
        break;
    case SideOwn:
        readOwn(accountOf(row));
        break;
    case SideReceived:
        readReceived(accountOf(row), m_changes.all || row.value(ColumnIsCurrent).toBool());
        break;
    case SideSubUser:
        m_subUsers.append({row.value(ColumnOtherId).toLongLong(),
                           row.value(ColumnOtherName).toString(),
                           row.value(ColumnEnabled).toBool()});
        break;
    default:
        break;
    }
}

void ServerModelReader::readOwn(const ModelAccount& account)
{
    if (m_changes.all) {
        m_fresh.ownByKey.insert(account.key, static_cast<int>(m_fresh.own.size()));
        m_fresh.own.append(account);
        return;
    }
    const int index = m_model.ownIndex(account.key);
    if (index < 0)
        return;
    m_model.own[index] = account;
    m_changes.own.append(index);
}

void ServerModelReader::readReceived(const ModelAccount& account, bool isCurrent)
{
    if (m_changes.all) {
        m_fresh.received.append(account);
        return;
    }
    QVector<ModelAccount>& received = m_model.received;
    const auto known =
        std::find_if(received.begin(), received.end(), [&](const ModelAccount& other) {
            return other.grant.reference == account.grant.reference;
        });
    if (known != received.end() && isCurrent)
        *known = account;
    else if (known != received.end())
        received.removeAt(known - received.begin());
    else if (isCurrent)
        received.append(account);
    else
        return;
    m_changes.received = true;
}

ModelChanges ServerModelReader::finish()
{
    if (m_changes.all) {
        m_fresh.subUsers = m_subUsers;
        m_model = m_fresh;
        return m_changes;
    }
    m_model.version = m_fresh.version;
    m_model.enabled = m_fresh.enabled;
    m_model.today = m_fresh.today;
    m_model.hasOverdue = m_fresh.hasOverdue;
    if (m_model.enabled && !sameSubUsers(m_model.subUsers, m_subUsers)) {
        m_model.subUsers = m_subUsers;
        m_changes.subUsers = true;
    }
    return m_changes;
}

} // namespace backend
