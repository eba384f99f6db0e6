#include "host/demo/DemoData.h"
#include "host/demo/DemoStore.h"
#include "kit/dates/DateConversions.h"
#include "tests/postgresql/DesksFixture.h"
#include "tests/support/TestCase.h"
#include "utils/ExchangeTimeZone.h"

#include <QTest>

#include <algorithm>
#include <utility>

using backend::StoreAdmin;
using backend::StoreOptions;
using host::DemoData;
using host::DemoStore;

class ServerDemoStoreTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void holdsWhatTheEmbeddedOneHolds();
    void everybodyCanSignInButTheDisabledSubUser();
    void aDatabaseWithPeopleIsLeftAsItIs();
    void whoeverIsNoAdministratorFillsNothing();

private:
    static StoreOptions onThatDay(StoreOptions options);
};

StoreOptions ServerDemoStoreTest::onThatDay(StoreOptions options)
{
    QDateTime now(QDate(2024, 3, 15), QTime(10, 0), utils::exchangeTimeZone());
    options.clock = [now] { return now; };
    return options;
}

static QString accountText(const mbservice::CAccountInfo& account)
{
    return QStringLiteral("%1 %2 %3 %4 %5 %6")
        .arg(account.accountType)
        .arg(account.platformId)
        .arg(QString::fromStdString(account.brokerId))
        .arg(account.accountSubType)
        .arg(QString::fromStdString(account.accountId),
             QString::fromStdString(account.accountAlias));
}

static QString dayText(qint32 seconds)
{
    return KZ::secondToQDateTime(seconds).date().toString(Qt::ISODate);
}

// Users, each one's accounts in their order, and grants in theirs; references are random.
static QStringList contents(const StoreAdmin& store)
{
    QStringList users;
    const QVector<backend::AdminUser> allUsers = store.users();
    for (const backend::AdminUser& user : allUsers)
        users.append(QStringLiteral("%1 of %2: %3").arg(user.name, user.owner).arg(user.enabled));
    // Each engine lists them in an order of its own.
    users.sort();
    QStringList accounts;
    QVector<backend::AdminAccount> allAccounts = store.accounts();
    std::stable_sort(allAccounts.begin(), allAccounts.end(),
                     [](const backend::AdminAccount& left, const backend::AdminAccount& right) {
                         return left.owner < right.owner;
                     });
    for (const backend::AdminAccount& account : std::as_const(allAccounts)) {
        accounts.append(account.owner + QStringLiteral(": ") + accountText(account.account) +
                        QStringLiteral(" below ") + account.parentNumber);
    }
    QStringList grants;
    const QVector<backend::GrantRecord> allGrants = store.grants();
    for (const backend::GrantRecord& grant : allGrants) {
        grants.append(QStringLiteral("%1 to %2: %3 %4 %5 %6 %7 %8 %9")
                          .arg(grant.grantor, grant.grantee, accountText(grant.account),
                               dayText(grant.limit.startTime), dayText(grant.limit.endTime))
                          .arg(grant.limit.availableMarginRatio)
                          .arg(static_cast<int>(grant.source))
                          .arg(static_cast<int>(grant.state))
                          .arg(grant.redeemed));
    }
    return users + accounts + grants;
}

void ServerDemoStoreTest::holdsWhatTheEmbeddedOneHolds()
{
    const QTemporaryDir folder;
    StoreOptions embedded = onThatDay({});
    embedded.cheapCryptographyForTests = true;
    QCOMPARE(DemoStore::ensure(folder.path(), embedded), QString());
    embedded.location = backend::StoreLocation::parse(DemoStore::filePath(folder.path()));
    QString error;
    const std::unique_ptr<StoreAdmin> expected = StoreAdmin::open(embedded, &error);
    QVERIFY2(expected, qPrintable(error));

    const DesksFixture desks;
    QCOMPARE(DemoStore::fillServer(onThatDay(desks.adminOptions())), QString());
    const std::unique_ptr<StoreAdmin> store = desks.admin();
    QVERIFY(store);
    QVERIFY(contents(*store).size() > 30);
    QCOMPARE(contents(*store), contents(*expected));
    QCOMPARE(store->verify(), QString());
}

void ServerDemoStoreTest::everybodyCanSignInButTheDisabledSubUser()
{
    const DesksFixture desks;
    QCOMPARE(DemoStore::fillServer(onThatDay(desks.adminOptions())), QString());
    for (const QString& user : DemoData::users()) {
        const backend::SignInResult result =
            backend::Session::signIn(desks.options(), user, DemoData::password());
        QCOMPARE(result.session != nullptr, user != DemoData::disabledTrader());
    }
}

void ServerDemoStoreTest::aDatabaseWithPeopleIsLeftAsItIs()
{
    DesksFixture desks;
    QVERIFY(desks.fill(3));
    const QStringList before = contents(*desks.admin());
    const QString error = DemoStore::fillServer(onThatDay(desks.adminOptions()));
    QVERIFY2(error.contains(QStringLiteral("已有用户")), qPrintable(error));
    QCOMPARE(contents(*desks.admin()), before);
    QVERIFY(desks.signIn(QStringLiteral("alice")));
}

void ServerDemoStoreTest::whoeverIsNoAdministratorFillsNothing()
{
    const DesksFixture desks;
    const std::unique_ptr<StoreAdmin> store = desks.admin();
    QVERIFY(store);
    StoreOptions wrong = onThatDay(desks.adminOptions());
    wrong.credential = QStringLiteral("guessed");
    QVERIFY(!DemoStore::fillServer(wrong).isEmpty());
    QVERIFY(store->users().isEmpty());
}

int main(int argc, char** argv)
{
    return runTest<ServerDemoStoreTest>(argc, argv);
}

#include "ServerDemoStoreTest.moc"
