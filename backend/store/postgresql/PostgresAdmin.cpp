#include "backend/store/postgresql/PostgresAdmin.h"

#include "authsetting/services/AccountKey.h"
#include "backend/store/postgresql/LoginName.h"
#include "backend/store/postgresql/PostgresError.h"
#include "backend/store/postgresql/ServerMigrations.h"
#include "utils/LogCenter.h"

#include <QSqlQuery>

#include <utility>

namespace backend {

namespace {

using namespace std::chrono_literals;

// An administrator's transaction may have to wait for those of the clients.
constexpr auto callTime = 60s;
constexpr auto readTime = 10min;

// The server keeps names in a column of its own type for them.
constexpr qsizetype maxNameBytes = 63;

QString fromUtf8(const std::string& bytes)
{
    return QString::fromStdString(bytes);
}

// The account's part of a call, in the order of the server's functions.
QVariantList identity(const mbservice::CAccountInfo& account)
{
    return {account.platformId, fromUtf8(account.brokerId), account.accountSubType,
            fromUtf8(account.accountId)};
}

mbservice::CAccountInfo accountAt(const QSqlQuery& row, int column)
{
    mbservice::CAccountInfo account;
    account.accountType = row.value(column).toInt();
    account.platformId = row.value(column + 1).toInt();
    account.brokerId = row.value(column + 2).toString().toStdString();
    account.accountSubType = row.value(column + 3).toInt();
    account.accountId = row.value(column + 4).toString().toStdString();
    account.accountAlias = row.value(column + 5).toString().toStdString();
    return account;
}

QString problemText(const QString& code, qint64 count)
{
    static const QHash<QString, QString> texts{
        {QStringLiteral("grant_not_of_owner"),
         QStringLiteral("存在授权人不是账号所有者的有效授权")},
        {QStringLiteral("grant_of_related_account"),
         QStringLiteral("存在子账户或含子账户的账号的有效授权")},
        {QStringLiteral("relation_across_owners"), QStringLiteral("存在跨用户的子账户关系")},
        {QStringLiteral("login_missing"), QStringLiteral("有用户没有数据库登录")},
        {QStringLiteral("login_state"), QStringLiteral("有用户的登录状态与其启用状态不符")},
        {QStringLiteral("login_with_power"), QStringLiteral("有用户的登录拥有管理权限")},
        {QStringLiteral("row_security_off"), QStringLiteral("有数据表没有强制行级安全")},
        {QStringLiteral("audit_of_unknown"), QStringLiteral("审计记录指向不存在的用户或账号")}};
    return QStringLiteral("%1（%2）").arg(texts.value(code, code)).arg(count);
}

} // namespace

PostgresAdmin::PostgresAdmin(const StoreOptions& options) : m_connection(options)
{
    ServerMigrations(ServerAddress(options)).apply();
    m_connection.open();
}

void PostgresAdmin::begin()
{
    if (m_isOpen)
        return;
    m_connection.call(QStringLiteral("BEGIN"), {}, callTime);
    m_isOpen = true;
    readNames();
}

void PostgresAdmin::readNames()
{
    m_users.clear();
    m_accounts.clear();
    read(QStringLiteral("SELECT name FROM authsetting.users"),
         [this](const QSqlQuery& row) { m_users.insert(row.value(0).toString()); });
    read(QStringLiteral("SELECT a.account_type, a.platform_id, a.broker_id, a.account_sub_type, "
                        "a.account_number, a.account_alias, u.name FROM authsetting.accounts a "
                        "JOIN authsetting.users u ON u.id = a.owner_id"),
         [this](const QSqlQuery& row) {
             m_accounts.insert(GW::genAccountKeyQs(accountAt(row, 0)), row.value(6).toString());
         });
}

QString PostgresAdmin::checkedName(const QString& name) const
{
    QString stored = AdminStore::checkedName(name);
    if (stored.toUtf8().size() > maxNameBytes)
        throw AdminProblem{QStringLiteral("用户名过长：服务器上最多 63 字节")};
    return stored;
}

QString PostgresAdmin::knownUser(const QString& name) const
{
    QString stored = checkedName(name);
    if (!m_users.contains(stored))
        refuseUnknown(name);
    return stored;
}

void PostgresAdmin::requireAccount(const mbservice::CAccountInfo& account) const
{
    if (!m_accounts.contains(GW::genAccountKeyQs(account)))
        throw AdminProblem{QStringLiteral("账号“%1”不存在").arg(GW::accountDisplayIDQs(account))};
}

void PostgresAdmin::read(const QString& sql, const PostgresConnection::OnRow& onRow)
{
    m_connection.call(sql, {}, readTime, onRow);
}

void PostgresAdmin::insert(const QString& sql, const QVariantList& values, const QString& problem)
{
    try {
        m_connection.call(sql, values, callTime);
    } catch (const PostgresError& error) {
        // Values that cannot be, rows that the tables forbid, and what the functions refuse.
        const QString group = error.sqlState().left(2);
        if (group != QStringLiteral("22") && group != QStringLiteral("23") &&
            group != QStringLiteral("P0"))
            throw;
        throw AdminProblem{problem};
    }
}

void PostgresAdmin::addPlatform(int kind, const mbservice::CPlatformInfo& platform)
{
    check(platform);
    begin();
    insert(QStringLiteral("INSERT INTO authsetting.platforms (kind, platform_id, name) "
                          "VALUES (?, ?, ?)"),
           {kind, platform.platformId, fromUtf8(platform.name)},
           QStringLiteral("平台 %1 已存在").arg(platform.platformId));
}

void PostgresAdmin::addBroker(int kind, const mbservice::CBrokerInfo& broker)
{
    check(broker);
    begin();
    const QString id = fromUtf8(broker.brokerId);
    insert(QStringLiteral("INSERT INTO authsetting.brokers (kind, platform_id, broker_id, name) "
                          "VALUES (?, ?, ?, ?)"),
           {kind, broker.platformId, id, fromUtf8(broker.name)},
           QStringLiteral("经纪公司“%1”已存在，或者没有平台 %2").arg(id).arg(broker.platformId));
}

void PostgresAdmin::addUser(const QString& owner, const QString& name, const QString& password,
                            bool enabled)
{
    const QString stored = checkedName(name);
    const QString digest = checkedDigest(password);
    begin();
    if (m_users.contains(stored))
        throw AdminProblem{QStringLiteral("用户“%1”已存在").arg(name)};
    QVariant ownerName{QMetaType(QMetaType::QString)};
    if (!owner.isNull())
        ownerName = knownUser(owner);
    insert(QStringLiteral("SELECT authsetting.admin_add_user(?, ?, ?, ?)"),
           {stored, ownerName, m_connection.verifier(loginName(stored), digest), enabled},
           QStringLiteral("服务器不接受用户“%1”").arg(name));
    m_users.insert(stored);
}

void PostgresAdmin::addAccount(const QString& owner, const mbservice::CAccountInfo& account)
{
    check(account);
    begin();
    const QString ownerName = knownUser(owner);
    const QString key = GW::genAccountKeyQs(account);
    const QString number = fromUtf8(account.accountId);
    if (m_accounts.contains(key))
        throw AdminProblem{QStringLiteral("账号“%1”已存在").arg(number)};
    insert(QStringLiteral("SELECT authsetting.admin_add_account(?, ?, ?, ?, ?, ?, ?, ?)"),
           QVariantList{ownerName, account.accountType} + identity(account) +
               QVariantList{fromUtf8(account.accountPrivate), fromUtf8(account.accountAlias)},
           QStringLiteral("服务器不接受账号“%1”").arg(number));
    m_accounts.insert(key, ownerName);
}

void PostgresAdmin::addSubAccount(const mbservice::CAccountInfo& parent,
                                  const mbservice::CAccountInfo& child)
{
    begin();
    requireAccount(parent);
    requireAccount(child);
    if (m_accounts.value(GW::genAccountKeyQs(parent)) !=
        m_accounts.value(GW::genAccountKeyQs(child)))
        throw AdminProblem{QStringLiteral("子账户与主账户不属于同一用户")};
    insert(QStringLiteral("SELECT authsetting.admin_add_sub_account(?, ?, ?, ?, ?, ?, ?, ?)"),
           identity(parent) + identity(child),
           QStringLiteral("账号“%1”已是该主账户的子账户，或者就是主账户本身")
               .arg(fromUtf8(child.accountId)));
}

void PostgresAdmin::addGrant(const GrantRecord& grant)
{
    begin();
    requireAccount(grant.account);
    const QVariantList whose{grant.reference, knownUser(grant.grantor), knownUser(grant.grantee)};
    const QVariantList what{m_days.day(grant.limit.startTime),
                            m_days.day(grant.limit.endTime),
                            grant.limit.hasMarginRatio()
                                ? QVariant(grant.limit.availableMarginRatio)
                                : QVariant(QMetaType(QMetaType::Double)),
                            static_cast<int>(grant.source),
                            static_cast<int>(grant.state),
                            grant.redeemed};
    insert(QStringLiteral("SELECT authsetting.admin_add_grant(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
                          "?::smallint, ?::smallint, ?)"),
           whose + identity(grant.account) + what, QStringLiteral("数据与授权数据库中的记录冲突"));
}

void PostgresAdmin::setPassword(const QString& name, const QString& password)
{
    const QString digest = checkedDigest(password);
    begin();
    const QString stored = knownUser(name);
    insert(QStringLiteral("SELECT authsetting.admin_set_password(?, ?)"),
           {stored, m_connection.verifier(loginName(stored), digest)},
           QStringLiteral("服务器不接受用户“%1”的密码").arg(name));
}

void PostgresAdmin::setEnabled(const QString& name, bool enabled)
{
    begin();
    const QString stored = knownUser(name);
    insert(QStringLiteral("SELECT authsetting.admin_set_enabled(?, ?)"), {stored, enabled},
           QStringLiteral("服务器不接受用户“%1”").arg(name));
    if (enabled)
        m_disabled.remove(stored);
    else
        m_disabled.insert(stored);
}

void PostgresAdmin::commit()
{
    if (!m_isOpen)
        return;
    m_connection.call(QStringLiteral("COMMIT"), {}, callTime);
    m_isOpen = false;
    endConnectionsOfDisabled();
}

// Of those, too, who signed in between the change and its commit.
void PostgresAdmin::endConnectionsOfDisabled()
{
    const QSet<QString> disabled = std::exchange(m_disabled, {});
    try {
        for (const QString& name : disabled) {
            m_connection.call(QStringLiteral("SELECT authsetting.admin_end_connections(?)"), {name},
                              callTime);
        }
    } catch (const PostgresError& error) {
        // The change itself is done, and the server's functions refuse whoever is disabled.
        utils::CLogCenter::error(QStringLiteral("connections of disabled users may be open [") +
                                 error.failure().detail + QStringLiteral("]"));
    }
}

void PostgresAdmin::rollback()
{
    if (!m_isOpen)
        return;
    m_isOpen = false;
    m_disabled.clear();
    try {
        m_connection.call(QStringLiteral("ROLLBACK"), {}, callTime);
    } catch (const PostgresError&) {
        // Without a connection the server has rolled back already.
    }
}

void PostgresAdmin::runAlone(const std::function<void()>& work)
{
    begin();
    m_connection.call(QStringLiteral("SAVEPOINT record"), {}, callTime);
    try {
        work();
    } catch (...) {
        if (m_connection.isOpen())
            m_connection.call(QStringLiteral("ROLLBACK TO SAVEPOINT record"), {}, callTime);
        throw;
    }
    m_connection.call(QStringLiteral("RELEASE SAVEPOINT record"), {}, callTime);
}

QVector<GrantRecord> PostgresAdmin::grants()
{
    QVector<GrantRecord> grants;
    read(QStringLiteral("SELECT reference, grantor, grantee, account_type, platform_id, broker_id, "
                        "account_sub_type, account_number, account_alias, first_day, last_day, "
                        "ratio, source, state, redeemed FROM authsetting.admin_grants()"),
         [&](const QSqlQuery& row) {
             GrantRecord grant;
             grant.reference = row.value(0).toString();
             grant.grantor = row.value(1).toString();
             grant.grantee = row.value(2).toString();
             grant.account = accountAt(row, 3);
             grant.limit.startTime = m_days.seconds(row.value(9).toDate());
             grant.limit.endTime = m_days.seconds(row.value(10).toDate());
             if (!row.isNull(11))
                 grant.limit.availableMarginRatio = row.value(11).toDouble();
             grant.source = static_cast<GrantSource>(row.value(12).toInt());
             grant.state = static_cast<GrantState>(row.value(13).toInt());
             grant.redeemed = row.value(14).toBool();
             grants.append(grant);
         });
    return grants;
}

QVector<AdminUser> PostgresAdmin::users()
{
    QVector<AdminUser> users;
    read(
        QStringLiteral("SELECT u.name, coalesce(o.name, ''), u.enabled FROM authsetting.users u "
                       "LEFT JOIN authsetting.users o ON o.id = u.owner_id "
                       "ORDER BY coalesce(o.name, u.name), u.position, u.name"),
        [&](const QSqlQuery& row) {
            users.append({row.value(0).toString(), row.value(1).toString(), row.value(2).toBool()});
        });
    return users;
}

QVector<AdminAccount> PostgresAdmin::accounts()
{
    QVector<AdminAccount> accounts;
    read(QStringLiteral(
             "SELECT a.account_type, a.platform_id, a.broker_id, a.account_sub_type, "
             "a.account_number, a.account_alias, u.name, "
             "coalesce((SELECT min(p.account_number) FROM authsetting.sub_accounts s "
             "JOIN authsetting.accounts p ON p.id = s.parent_id WHERE s.child_id = a.id), '') "
             "FROM authsetting.accounts a JOIN authsetting.users u ON u.id = a.owner_id "
             "ORDER BY u.name, a.position"),
         [&](const QSqlQuery& row) {
             accounts.append({accountAt(row, 0), row.value(6).toString(), row.value(7).toString()});
         });
    return accounts;
}

QString PostgresAdmin::verify()
{
    QStringList problems;
    read(QStringLiteral("SELECT problem, count FROM authsetting.admin_verify()"),
         [&](const QSqlQuery& row) {
             problems.append(problemText(row.value(0).toString(), row.value(1).toLongLong()));
         });
    return problems.join(QStringLiteral("；"));
}

} // namespace backend
