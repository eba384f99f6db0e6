#pragma once

#include "backend/store/AdminStore.h"
#include "backend/store/ExchangeDays.h"
#include "backend/store/postgresql/PostgresConnection.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QVariant>

namespace backend {

/// A store on a server in the hands of its administrator, a superuser there.
class PostgresAdmin final : public AdminStore
{
public:
    explicit PostgresAdmin(const StoreOptions& options);

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
    void rollback() override;
    void runAlone(const std::function<void()>& work) override;
    QVector<GrantRecord> grants() override;
    QVector<AdminUser> users() override;
    QVector<AdminAccount> accounts() override;
    QString verify() override;

protected:
    QString checkedName(const QString& name) const override;

private:
    void begin();
    void readNames();
    /// The name as the store keeps it. Throws when no user has it.
    QString knownUser(const QString& name) const;
    void requireAccount(const mbservice::CAccountInfo& account) const;
    void read(const QString& sql, const PostgresConnection::OnRow& onRow);
    /// Runs `sql`, which adds or changes a record; `problem` is why the tables forbid it.
    void insert(const QString& sql, const QVariantList& values, const QString& problem);
    void endConnectionsOfDisabled();

    PostgresConnection m_connection;
    ExchangeDays m_days;
    bool m_isOpen = false;
    QSet<QString> m_users;
    /// Whom the transaction disables.
    QSet<QString> m_disabled;
    /// The owner of each account, by account key.
    QHash<QString, QString> m_accounts;
};

} // namespace backend
