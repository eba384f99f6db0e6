#pragma once

#include "backend/store/AdminStore.h"
#include "backend/store/Database.h"
#include "backend/store/ExchangeDays.h"
#include "backend/store/Transaction.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <memory>
#include <optional>

namespace backend {

/// An embedded store in the hands of its administrator.
class StoreFiller final : public AdminStore
{
public:
    explicit StoreFiller(const StoreOptions& options);

    void addPlatform(int kind, const mbservice::CPlatformInfo& platform) override;
    void addBroker(int kind, const mbservice::CBrokerInfo& broker) override;
    void addUser(const QString& owner, const QString& name, const QString& password,
                 bool enabled) override;
    void addAccount(const QString& owner, const mbservice::CAccountInfo& account) override;
    void addSubAccount(const mbservice::CAccountInfo& parent,
                       const mbservice::CAccountInfo& child) override;
    void addGrant(const GrantRecord& grant) override;
    void setPassword(const QString& name, const QString& password) override;
    void setEnabled(const QString& name, bool enabled) override;
    void commit() override;
    void rollback() override { m_transaction.reset(); }
    void runAlone(const std::function<void()>& work) override;
    QVector<GrantRecord> grants() override;
    QVector<AdminUser> users() override;
    QVector<AdminAccount> accounts() override;
    QString verify() override;

private:
    struct AccountRow
    {
        qint64 id = 0;
        qint64 ownerId = 0;
    };
    struct UserRow
    {
        qint64 id = 0;
        /// 0 for an ordinary user.
        qint64 ownerId = 0;
    };

    void begin();
    void readNames();
    qint64 nextId(const char* statement);
    qint64 userId(const QString& name);
    AccountRow accountRow(const mbservice::CAccountInfo& account);
    UserRow userRow(const QString& name);
    /// What the store keeps of a digest; throws `problem` when there is no memory to make it.
    QString hashed(const QString& digest, const QString& problem) const;
    /// Writes down what was done to a user and has him and whoever manages him see it.
    void noteChange(const UserRow& user, const char* action, const QString& detail);

    Database m_database;
    ExchangeDays m_days;
    std::optional<Transaction> m_transaction;
    QHash<QString, qint64> m_users;
    QHash<QString, AccountRow> m_accounts;
    QSet<qint64> m_touched;
    qint64 m_nextUserId = 0;
    qint64 m_nextAccountId = 0;
    qint64 m_nextGrantId = 0;
};

} // namespace backend
