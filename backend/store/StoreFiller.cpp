#include "backend/store/StoreFiller.h"

#include "authsetting/services/AccountKey.h"
#include "backend/store/AuditTrail.h"
#include "backend/store/GrantOperations.h"
#include "backend/store/PasswordHash.h"
#include "backend/store/SignInGuard.h"
#include "backend/store/SqlText.h"
#include "backend/store/StoreError.h"

#include <utility>

namespace backend {

namespace {

QString fromUtf8(const std::string& bytes)
{
    return QString::fromStdString(bytes);
}

QVariant timeOrNull(bool isSet, const QString& time)
{
    return isSet ? QVariant(time) : QVariant(QMetaType(QMetaType::QString));
}

// Runs `insert`, whose row the tables forbid for no other reason than `problem`.
template <class Insert>
void insertRow(const Insert& insert, const QString& problem)
{
    try {
        insert();
    } catch (const StoreError& error) {
        if (error.failure().kind != StoreFailure::Kind::Constraint)
            throw;
        throw AdminStore::AdminProblem{problem};
    }
}

} // namespace

StoreFiller::StoreFiller(const StoreOptions& options) : m_database(options)
{
    m_database.open(Database::Creation::Allowed, Database::Inspection::Whole);
}

void StoreFiller::begin()
{
    if (m_transaction)
        return;
    m_transaction.emplace(m_database, Transaction::Mode::Write);
    m_touched.clear();
    readNames();
    m_nextUserId = nextId("users.next_id");
    m_nextAccountId = nextId("accounts.next_id");
    m_nextGrantId = nextId("grants.next_id");
}

void StoreFiller::readNames()
{
    m_users.clear();
    m_accounts.clear();
    {
        Statement row = m_database.statement("users.all");
        row.run();
        while (row.next())
            m_users.insert(row.text(1), row.integer(0));
    }
    Statement row = m_database.statement("accounts.all_keys");
    row.run();
    while (row.next()) {
        mbservice::CAccountInfo account;
        account.platformId = row.number(2);
        account.brokerId = row.bytes(3);
        account.accountSubType = row.number(4);
        account.accountId = row.bytes(5);
        m_accounts.insert(GW::genAccountKeyQs(account), {row.integer(0), row.integer(1)});
    }
}

qint64 StoreFiller::nextId(const char* statement)
{
    Statement row = m_database.statement(statement);
    row.run().next();
    return row.integer(0);
}

qint64 StoreFiller::userId(const QString& name)
{
    const auto found = m_users.constFind(checkedName(name));
    if (found == m_users.constEnd())
        refuseUnknown(name);
    return *found;
}

StoreFiller::UserRow StoreFiller::userRow(const QString& name)
{
    Statement row = m_database.statement("users.by_name");
    if (!row.run(checkedName(name)).next())
        refuseUnknown(name);
    return {row.integer(0), row.isNull(1) ? 0 : row.integer(1)};
}

StoreFiller::AccountRow StoreFiller::accountRow(const mbservice::CAccountInfo& account)
{
    const auto found = m_accounts.constFind(GW::genAccountKeyQs(account));
    if (found == m_accounts.constEnd()) {
        throw AdminProblem{QStringLiteral("账号“%1”不存在").arg(GW::accountDisplayIDQs(account))};
    }
    return *found;
}

void StoreFiller::addPlatform(int kind, const mbservice::CPlatformInfo& platform)
{
    check(platform);
    begin();
    insertRow(
        [&] {
            m_database.statement("platforms.insert")
                .run(kind, platform.platformId, fromUtf8(platform.name));
        },
        QStringLiteral("平台 %1 已存在").arg(platform.platformId));
}

void StoreFiller::addBroker(int kind, const mbservice::CBrokerInfo& broker)
{
    check(broker);
    begin();
    const QString id = fromUtf8(broker.brokerId);
    insertRow(
        [&] {
            m_database.statement("brokers.insert")
                .run(kind, broker.platformId, id, fromUtf8(broker.name));
        },
        QStringLiteral("经纪公司“%1”已存在，或者没有平台 %2").arg(id).arg(broker.platformId));
}

QString StoreFiller::hashed(const QString& digest, const QString& problem) const
{
    const PasswordHash hasher(m_database.options().cheapCryptographyForTests);
    QString hash = hasher.hash(digest);
    if (hash.isEmpty())
        throw AdminProblem{problem};
    return hash;
}

void StoreFiller::addUser(const QString& owner, const QString& name, const QString& password,
                          bool enabled)
{
    const QString stored = checkedName(name);
    const QString hash = hashed(checkedDigest(password), QStringLiteral("内存不足，用户未添加"));
    begin();
    if (m_users.contains(stored))
        throw AdminProblem{QStringLiteral("用户“%1”已存在").arg(name)};
    QVariant ownerId{QMetaType(QMetaType::LongLong)};
    if (!owner.isNull()) {
        ownerId = userId(owner);
        m_touched.insert(ownerId.toLongLong());
    }
    m_database.statement("users.insert").run(m_nextUserId, stored, ownerId, hash, enabled);
    m_users.insert(stored, m_nextUserId++);
}

void StoreFiller::setPassword(const QString& name, const QString& password)
{
    const QString stored = checkedName(name);
    const QString digest = checkedDigest(password);
    begin();
    const UserRow user = userRow(stored);
    const QString hash = hashed(digest, QStringLiteral("内存不足，密码未修改"));
    m_database.statement("users.admin_set_password").run(hash, user.id);
    SignInGuard(m_database).forget(stored);
    noteChange(user, "admin_password", QString());
}

void StoreFiller::setEnabled(const QString& name, bool enabled)
{
    begin();
    const UserRow user = userRow(name);
    m_database.statement("users.admin_set_enabled").run(enabled, user.id);
    noteChange(user, "admin_state", enabled ? QStringLiteral("启用") : QStringLiteral("禁用"));
}

void StoreFiller::noteChange(const UserRow& user, const char* action, const QString& detail)
{
    AuditTrail audit(m_database, storedTime(m_database.options().now()));
    audit.write({0, user.id, user.ownerId, action, 0, detail, QString()});
    m_touched.insert(user.id);
    if (user.ownerId != 0)
        m_touched.insert(user.ownerId);
}

void StoreFiller::addAccount(const QString& owner, const mbservice::CAccountInfo& account)
{
    check(account);
    begin();
    const qint64 ownerId = userId(owner);
    const QString key = GW::genAccountKeyQs(account);
    if (m_accounts.contains(key)) {
        throw AdminProblem{QStringLiteral("账号“%1”已存在").arg(fromUtf8(account.accountId))};
    }
    m_database.statement("accounts.insert")
        .run(m_nextAccountId, ownerId, account.accountType, account.platformId,
             fromUtf8(account.brokerId), account.accountSubType, fromUtf8(account.accountId),
             fromUtf8(account.accountPrivate), fromUtf8(account.accountAlias));
    m_accounts.insert(key, {m_nextAccountId++, ownerId});
    m_touched.insert(ownerId);
}

void StoreFiller::addSubAccount(const mbservice::CAccountInfo& parent,
                                const mbservice::CAccountInfo& child)
{
    begin();
    const AccountRow parentRow = accountRow(parent);
    const AccountRow childRow = accountRow(child);
    if (parentRow.ownerId != childRow.ownerId)
        throw AdminProblem{QStringLiteral("子账户与主账户不属于同一用户")};
    insertRow([&] { m_database.statement("accounts.relate").run(parentRow.id, childRow.id); },
              QStringLiteral("账号“%1”已是该主账户的子账户，或者就是主账户本身")
                  .arg(fromUtf8(child.accountId)));
    m_touched.insert(parentRow.ownerId);
}

void StoreFiller::addGrant(const GrantRecord& grant)
{
    begin();
    const AccountRow account = accountRow(grant.account);
    const qint64 grantorId = userId(grant.grantor);
    const qint64 granteeId = userId(grant.grantee);
    const bool ended = grant.state == GrantState::Cancelled || grant.state == GrantState::Expired;
    const QString now = storedTime(m_database.options().now());
    m_database.statement("grants.insert_whole")
        .run(m_nextGrantId++, grant.reference.isEmpty() ? newGrantReference() : grant.reference,
             grantorId, granteeId, account.id, storedDay(m_days.day(grant.limit.startTime)),
             storedDay(m_days.day(grant.limit.endTime)),
             grant.limit.hasMarginRatio() ? QVariant(grant.limit.availableMarginRatio)
                                          : QVariant(QMetaType(QMetaType::Double)),
             static_cast<int>(grant.source), static_cast<int>(grant.state), now,
             timeOrNull(ended, now), timeOrNull(grant.redeemed, now));
    m_touched.insert(grantorId);
    m_touched.insert(granteeId);
}

void StoreFiller::commit()
{
    if (!m_transaction)
        return;
    for (const qint64 userId : std::as_const(m_touched))
        m_database.statement("users.touch").run(userId);
    m_transaction->commit();
    m_transaction.reset();
}

void StoreFiller::runAlone(const std::function<void()>& work)
{
    begin();
    m_database.execute(sqlText("savepoint.begin"));
    try {
        work();
    } catch (...) {
        m_database.execute(sqlText("savepoint.undo"));
        m_database.execute(sqlText("savepoint.release"));
        throw;
    }
    m_database.execute(sqlText("savepoint.release"));
}

QVector<AdminUser> StoreFiller::users()
{
    QVector<AdminUser> users;
    Statement row = m_database.statement("users.list");
    row.run();
    while (row.next())
        users.append({row.text(0), row.text(1), row.flag(2)});
    return users;
}

QVector<AdminAccount> StoreFiller::accounts()
{
    QVector<AdminAccount> accounts;
    Statement row = m_database.statement("accounts.list");
    row.run();
    while (row.next()) {
        AdminAccount found;
        found.owner = row.text(0);
        found.account.accountType = row.number(1);
        found.account.platformId = row.number(2);
        found.account.brokerId = row.bytes(3);
        found.account.accountSubType = row.number(4);
        found.account.accountId = row.bytes(5);
        found.account.accountAlias = row.bytes(6);
        found.parentNumber = row.text(7);
        accounts.append(found);
    }
    return accounts;
}

QVector<GrantRecord> StoreFiller::grants()
{
    QVector<GrantRecord> grants;
    Statement row = m_database.statement("grants.all");
    row.run();
    while (row.next()) {
        GrantRecord grant;
        grant.reference = row.text(0);
        grant.grantor = row.text(1);
        grant.grantee = row.text(2);
        grant.account.accountType = row.number(3);
        grant.account.platformId = row.number(4);
        grant.account.brokerId = row.bytes(5);
        grant.account.accountSubType = row.number(6);
        grant.account.accountId = row.bytes(7);
        grant.account.accountAlias = row.bytes(8);
        grant.limit.startTime = m_days.seconds(row.day(9));
        grant.limit.endTime = m_days.seconds(row.day(10));
        if (!row.isNull(11))
            grant.limit.availableMarginRatio = row.real(11);
        grant.source = static_cast<GrantSource>(row.number(12));
        grant.state = static_cast<GrantState>(row.number(13));
        grant.redeemed = !row.isNull(14);
        grants.append(grant);
    }
    return grants;
}

QString StoreFiller::verify()
{
    const QString result = m_database.check(true);
    if (result != QStringLiteral("ok"))
        return QStringLiteral("授权数据库已损坏：") + result;
    if (nextId("grants.not_of_owner") != 0)
        return QStringLiteral("存在授权人不是账号所有者的有效授权");
    if (nextId("grants.of_related_accounts") != 0)
        return QStringLiteral("存在子账户或含子账户的账号的有效授权");
    return {};
}

} // namespace backend
