#pragma once

#include "authsetting/services/AuthDetail.h"
#include "backend/client/Session.h"
#include "backend/store/StoreAdmin.h"
#include "backend/store/UserStore.h"
#include "tests/backend/ServerFixture.h"

#include <QDateTime>
#include <QString>
#include <QTemporaryDir>
#include <QVector>

#include <atomic>
#include <memory>

/// A store of its own with a clock that the test sets: in a temporary folder, or on a server when
/// AUTHSETTING_TEST_ENGINE says "postgresql".
///
/// alice owns the accounts 1 to 5 and the main account 6 with its sub-account 7, and manages dora
/// (enabled) and erin (disabled). bob owns account 20. carl is disabled. Everybody's password is
/// "pw-" and the name.
class StoreFixture
{
public:
    StoreFixture();

    backend::StoreOptions options() const;
    /// Where an embedded store's file is.
    QString path() const;
    /// The store as other processes are told of it.
    QString place() const;
    QString folder() const { return m_folder.path(); }

    /// Makes the users and accounts above; null on failure, which the test reports.
    std::unique_ptr<backend::StoreAdmin> fill() const;
    /// The store as an administrator sees it.
    std::unique_ptr<backend::StoreAdmin> admin() const;
    /// Gives alice `count` more accounts from number `first` on.
    bool addAccounts(int first, int count) const;
    bool addGrant(const backend::GrantRecord& grant) const;

    /// The store as that user's worker has it, already open.
    std::unique_ptr<backend::UserStore> storeOf(const QString& user) const;
    std::unique_ptr<backend::Session> signIn(const QString& user) const;

    void setNow(const QDateTime& now);
    /// The clock's day in the exchange time zone.
    QDate today() const;

    static mbservice::CAccountInfo account(int number);
    static QString key(int number);
    /// From today, with the ends moved by so many days.
    GW::CAuthLimit days(int first, int last) const;
    /// The same with a condition.
    GW::CAuthLimit daysWithRatio(int first, int last, double ratio) const;
    static qint32 midnight(const QDate& day);

    backend::StoreRequest add(int account, const QString& grantee, bool toServer = true) const;
    backend::StoreRequest cancel(int account, const QString& grantee) const;
    /// Every grant's state by account number, as "bob current server", in order of making.
    QStringList grantsOf(int account) const;
    /// A number that grows by one with each transaction that grants something.
    qint64 commits() const;
    /// Changes the tables behind everybody's back, in words that every engine understands.
    void meddle(const QString& sql) const;
    /// How many successful entries of the audit trail name that action.
    qint64 auditCount(const QString& action) const;

private:
    QTemporaryDir m_folder;
    std::unique_ptr<ServerFixture> m_server;
    std::shared_ptr<std::atomic<qint64>> m_now;
};

/// The standard names, shorter to read in a test.
namespace name {
inline const QString alice = QStringLiteral("alice");
inline const QString bob = QStringLiteral("bob");
inline const QString carl = QStringLiteral("carl");
inline const QString dora = QStringLiteral("dora");
inline const QString erin = QStringLiteral("erin");
} // namespace name
