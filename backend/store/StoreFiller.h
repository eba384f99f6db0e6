#pragma once

#include "backend/store/Database.h"
#include "backend/store/ExchangeDays.h"
#include "backend/store/StoreAdmin.h"
#include "backend/store/Transaction.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <memory>
#include <optional>

namespace backend {

/// What StoreAdmin does, with failures thrown as StoreError (of the engine) or AdminProblem (a
/// record that cannot be).
class StoreFiller
{
public:
    /// Why a record is not acceptable, in Chinese.
    struct AdminProblem
    {
        QString text;
    };

    explicit StoreFiller(const StoreOptions& options);

    void addPlatform(int kind, const mbservice::CPlatformInfo& platform);
    void addBroker(int kind, const mbservice::CBrokerInfo& broker);
    void addUser(const QString& owner, const QString& name, const QString& password, bool enabled);
    void addAccount(const QString& owner, const mbservice::CAccountInfo& account);
    void addSubAccount(const mbservice::CAccountInfo& parent, const mbservice::CAccountInfo& child);
    void addGrant(const GrantRecord& grant);
    void commit();
    void rollback() { m_transaction.reset(); }
    QVector<GrantRecord> grants();
    QString verify();

private:
    struct AccountRow
    {
        qint64 id = 0;
        qint64 ownerId = 0;
    };

    void begin();
    void readNames();
    qint64 nextId(const char* statement);
    qint64 userId(const QString& name);
    AccountRow accountRow(const mbservice::CAccountInfo& account);

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
