#pragma once

#include "authsetting/services/AccountInfo.h"
#include "authsetting/services/BrokerInfo.h"
#include "authsetting/services/PlatformInfo.h"
#include "backend/store/AdminAccount.h"
#include "backend/store/AdminUser.h"
#include "backend/store/GrantRecord.h"
#include "backend/store/StoreOptions.h"

#include <QString>
#include <QVector>

#include <memory>

namespace backend {

class StoreAdminPrivate;

/// Fills and checks a store with an administrator's rights: everything added between open() and
/// commit() is one transaction, which the destructor rolls back when it was not committed. One
/// thread at a time.
///
/// A server is signed in to as the user of the location, who has to be a superuser there.
///
/// Functions that return bool leave the reason of a false in error(), in Chinese; the first failure
/// makes commit() fail too, unless refused records are to be skipped.
class StoreAdmin
{
public:
    /// Which of the platform and broker tables a record belongs to.
    enum class Kind : int { Futures = 1, Stock = 2 };

    /// Creates the store (folder 0700, file 0600; on a server, roles, tables and functions in a
    /// database that is there) or brings its schema up to date. Null with the
    /// reason in `error` when it cannot be opened, is damaged or of a newer schema; the file is
    /// then left as it was.
    static std::unique_ptr<StoreAdmin> open(const StoreOptions& options, QString* error);
    ~StoreAdmin();

    /// Leaves records that are refused out of the transaction from now on, instead of giving it up;
    /// a failure of the store itself still makes everything fail: see hasFailed().
    void skipRefusedRecords();
    /// Whether the transaction is beyond saving.
    bool hasFailed() const;

    bool addPlatform(Kind kind, const mbservice::CPlatformInfo& platform);
    bool addBroker(Kind kind, const mbservice::CBrokerInfo& broker);
    /// `password` is the text that the user types to sign in.
    bool addUser(const QString& name, const QString& password, bool enabled = true);
    /// A user whom `owner` manages.
    bool addSubUser(const QString& owner, const QString& name, const QString& password,
                    bool enabled = true);
    /// Accounts keep the order in which they are added.
    bool addAccount(const QString& owner, const mbservice::CAccountInfo& account);
    /// Makes `child` a sub-account of `parent`; neither can then be granted.
    bool addSubAccount(const mbservice::CAccountInfo& parent, const mbservice::CAccountInfo& child);
    /// Gives a user, sub-user or not, the password that he types from now on, and lets him try at
    /// once, however often he failed before. Whoever is signed in stays so.
    bool setPassword(const QString& name, const QString& password);
    /// A disabled user cannot sign in; where he is signed in, requests are refused and nothing new
    /// is shown from the commit on.
    bool setEnabled(const QString& name, bool enabled);
    /// A grant in any state, checked only for what the tables themselves forbid.
    bool addGrant(const GrantRecord& grant);
    bool commit();

    /// Whether there is such a user; does not begin a transaction. False never makes commit() fail
    /// unless the store itself failed.
    bool requireUser(const QString& name) const;
    /// Every grant, oldest first; account records carry the four identifying fields and the alias.
    QVector<GrantRecord> grants() const;
    /// On a server by name, each with his sub-users; otherwise in the order in which they were
    /// made.
    QVector<AdminUser> users() const;
    /// By owner, each one's in the order in which they were added.
    QVector<AdminAccount> accounts() const;
    /// The first problem that the engine's own check or the relations between the tables show, in
    /// Chinese; empty when the store is sound.
    QString verify() const;
    QString error() const;

private:
    explicit StoreAdmin(std::unique_ptr<StoreAdminPrivate> d);
    std::unique_ptr<StoreAdminPrivate> d;
};

} // namespace backend
