#pragma once

#include "backend/store/AdminAccount.h"
#include "backend/store/AdminUser.h"
#include "backend/store/StoreAdmin.h"

#include <QString>
#include <QVector>

#include <functional>
#include <memory>

namespace backend {

/// What StoreAdmin does, one class per engine. Failures are thrown: StoreError for those of the
/// engine, AdminProblem for a record that cannot be.
class AdminStore
{
public:
    /// Why a record is not acceptable, in Chinese.
    struct AdminProblem
    {
        QString text;
    };

    /// Opens the store of `options`, creating what is missing.
    static std::unique_ptr<AdminStore> open(const StoreOptions& options);
    virtual ~AdminStore();

    virtual void addPlatform(int kind, const mbservice::CPlatformInfo& platform) = 0;
    virtual void addBroker(int kind, const mbservice::CBrokerInfo& broker) = 0;
    /// A null `owner` makes an ordinary user.
    virtual void addUser(const QString& owner, const QString& name, const QString& password,
                         bool enabled) = 0;
    virtual void addAccount(const QString& owner, const mbservice::CAccountInfo& account) = 0;
    virtual void addSubAccount(const mbservice::CAccountInfo& parent,
                               const mbservice::CAccountInfo& child) = 0;
    virtual void addGrant(const GrantRecord& grant) = 0;
    /// Changes of users take part in the transaction; those of them who are disabled lose their
    /// open connections for good with its commit.
    virtual void setPassword(const QString& name, const QString& password) = 0;
    virtual void setEnabled(const QString& name, bool enabled) = 0;
    /// Throws when there is no such user; outside of any transaction.
    void requireUser(const QString& name);
    virtual void commit() = 0;
    virtual void rollback() = 0;

    /// Runs `work` so that nothing of it stays in the transaction when it throws.
    virtual void runAlone(const std::function<void()>& work) = 0;

    virtual QVector<GrantRecord> grants() = 0;
    virtual QVector<AdminUser> users() = 0;
    virtual QVector<AdminAccount> accounts() = 0;
    virtual QString verify() = 0;

protected:
    /// The name as the store keeps it. Throws when it cannot be a user's.
    virtual QString checkedName(const QString& name) const;
    [[noreturn]] static void refuseUnknown(const QString& name);
    /// The digest for a typed password. Throws for an empty one.
    static QString checkedDigest(const QString& password);
    static void check(const mbservice::CPlatformInfo& platform);
    static void check(const mbservice::CBrokerInfo& broker);
    static void check(const mbservice::CAccountInfo& account);
};

} // namespace backend
