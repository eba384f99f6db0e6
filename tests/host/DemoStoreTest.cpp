#include "host/demo/DemoStore.h"

#include "authsetting/services/Account.h"
#include "authsetting/services/AuthClient.h"
#include "authsetting/services/UserConfig.h"
#include "backend/store/StoreAdmin.h"
#include "host/demo/DemoAccount.h"
#include "host/demo/DemoData.h"
#include "tests/host/DemoFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QTest>

#include <thread>

using backend::GrantRecord;
using backend::GrantSource;
using backend::GrantState;
using host::DemoData;
using host::DemoStore;

class DemoStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isMadeWholeAndReadableByItsOwnerOnly();
    void isFilledOnceAndNeverAgain();
    void anExistingFileIsLeftAsItIs();
    void twoClientsStartingAtOnceGetOneStore();
    void holdsGrantsInEveryState();
    void everybodyCanSignInButTheDisabledSubUser();
    void aRealStoreIsNeverFilled();
    void aMissingRealStoreIsNotMade();
    void aDamagedStoreIsRefusedAndLeftAsItIs();
};

static QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void DemoStoreTest::isMadeWholeAndReadableByItsOwnerOnly()
{
    const DemoFixture demo;
    const QString folder = demo.folder() + QStringLiteral("/deep/demo");
    QCOMPARE(DemoStore::ensure(folder, demo.options()), QString());
    const QString path = DemoStore::filePath(folder);
    QVERIFY(QFileInfo::exists(path));
    const QFile::Permissions others =
        QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    QVERIFY((QFile::permissions(path) & others) == 0);
    QVERIFY((QFile::permissions(folder) & others) == 0);
    // Nothing of its making is left behind.
    QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
             QStringList{QFileInfo(path).fileName()});
}

void DemoStoreTest::isFilledOnceAndNeverAgain()
{
    const DemoFixture demo;
    QCOMPARE(DemoStore::ensure(demo.folder(), demo.options()), QString());
    const QByteArray first = contents(DemoStore::filePath(demo.folder()));
    QVERIFY(!first.isEmpty());
    QCOMPARE(DemoStore::ensure(demo.folder(), demo.options()), QString());
    QCOMPARE(contents(DemoStore::filePath(demo.folder())), first);
}

void DemoStoreTest::anExistingFileIsLeftAsItIs()
{
    const DemoFixture demo;
    QFile file(DemoStore::filePath(demo.folder()));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("somebody else's");
    file.close();
    QCOMPARE(DemoStore::ensure(demo.folder(), demo.options()), QString());
    QCOMPARE(contents(file.fileName()), QByteArray("somebody else's"));
}

void DemoStoreTest::twoClientsStartingAtOnceGetOneStore()
{
    const DemoFixture demo;
    QString errors[2];
    {
        std::thread other([&] { errors[0] = DemoStore::ensure(demo.folder(), demo.options()); });
        errors[1] = DemoStore::ensure(demo.folder(), demo.options());
        other.join();
    }
    QCOMPARE(errors[0], QString());
    QCOMPARE(errors[1], QString());
    QString error;
    const auto store = backend::StoreAdmin::open(demo.storeOptions(), &error);
    QVERIFY2(store, qPrintable(error));
    QCOMPARE(store->verify(), QString());
}

void DemoStoreTest::holdsGrantsInEveryState()
{
    const DemoFixture demo;
    QString error;
    const auto store = backend::StoreAdmin::open(demo.storeOptions(), &error);
    QVERIFY2(store, qPrintable(error));
    QCOMPARE(store->verify(), QString());
    const QVector<GrantRecord> grants = store->grants();
    const auto count = [&grants](GrantSource source, GrantState state, bool redeemed) {
        return std::count_if(grants.begin(), grants.end(), [=](const GrantRecord& grant) {
            return grant.source == source && grant.state == state && grant.redeemed == redeemed;
        });
    };
    QVERIFY(count(GrantSource::Server, GrantState::Current, false) > 0);
    QVERIFY(count(GrantSource::File, GrantState::Current, false) > 0);
    QVERIFY(count(GrantSource::File, GrantState::Current, true) > 0);
    QVERIFY(count(GrantSource::File, GrantState::Prepared, false) > 0);
    QVERIFY(count(GrantSource::Server, GrantState::Cancelled, false) > 0);
    QVERIFY(count(GrantSource::Server, GrantState::Expired, false) > 0);
    const auto limited = std::count_if(grants.begin(), grants.end(), [](const GrantRecord& grant) {
        return grant.limit.hasMarginRatio();
    });
    QVERIFY(limited > 0);

    const auto session = demo.signIn(DemoData::mainUser());
    QSet<int> kinds;
    QSet<int> states;
    QSet<int> platforms;
    int relations = 0;
    for (const auto& account : std::as_const(session->userConfig()->accounts)) {
        kinds.insert(account->accountType);
        states.insert(account->authType);
        platforms.insert(account->platformId);
        relations += session->userConfig()->hasSubAccount(account->key()) ? 1 : 0;
    }
    QCOMPARE(kinds, (QSet<int>{1, 2}));
    QCOMPARE(states, (QSet<int>{1, 2, 3}));
    QVERIFY(platforms.size() >= 4);
    QCOMPARE(relations, 1);
    QVector<QString> subUsers;
    QVERIFY(session->authClient()->getSubUserList(subUsers));
    QCOMPARE(subUsers.size(), 3);
    QVERIFY(!session->authClient()->isSubUserActive(DemoData::disabledTrader()));
    QVERIFY(session->authClient()->isSubUserActive(DemoData::dayTrader()));
}

void DemoStoreTest::everybodyCanSignInButTheDisabledSubUser()
{
    const DemoFixture demo;
    const backend::StoreOptions options = demo.storeOptions();
    for (const QString& user : DemoData::users()) {
        const backend::SignInResult result =
            backend::Session::signIn(options, user, DemoData::password());
        QCOMPARE(result.session != nullptr, user != DemoData::disabledTrader());
    }
}

void DemoStoreTest::aRealStoreIsNeverFilled()
{
    const DemoFixture demo;
    backend::StoreOptions real = demo.options();
    real.location = backend::StoreLocation::parse(demo.folder() + QStringLiteral("/real.db"));
    QString error;
    auto store = backend::StoreAdmin::open(real, &error);
    QVERIFY2(store, qPrintable(error));
    QVERIFY(store->addUser(QStringLiteral("owner"), QStringLiteral("secret-1")));
    QVERIFY(store->commit());
    store.reset();

    host::HostApplication client(host::HostOptions(), real, demo.folder() + QStringLiteral("/d"));
    QCOMPARE(client.start(), QString());
    QVERIFY(!QFileInfo::exists(demo.folder() + QStringLiteral("/d")));
    store = backend::StoreAdmin::open(real, &error);
    QVERIFY(store);
    QVERIFY(store->grants().isEmpty());
    const auto demoUser =
        backend::Session::signIn(real, DemoData::mainUser(), DemoData::password());
    QVERIFY(!demoUser.session);
    QVERIFY(backend::Session::signIn(real, QStringLiteral("owner"), QStringLiteral("secret-1"))
                .session);
}

void DemoStoreTest::aMissingRealStoreIsNotMade()
{
    const DemoFixture demo;
    backend::StoreOptions real = demo.options();
    real.location = backend::StoreLocation::parse(demo.folder() + QStringLiteral("/none.db"));
    host::HostApplication client(host::HostOptions(), real, demo.folder());
    QVERIFY(client.start().contains(real.location.path));
    QVERIFY(!client.signInDialog());
    QVERIFY(!QFileInfo::exists(real.location.path));
}

void DemoStoreTest::aDamagedStoreIsRefusedAndLeftAsItIs()
{
    const DemoFixture demo;
    backend::StoreOptions real = demo.options();
    real.location = backend::StoreLocation::parse(demo.folder() + QStringLiteral("/bad.db"));
    const QByteArray garbage(8192, 'x');
    QFile file(real.location.path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(garbage);
    file.close();
    host::HostApplication client(host::HostOptions(), real, demo.folder());
    const QString error = client.start();
    QVERIFY2(error.startsWith(QStringLiteral("无法打开存储")), qPrintable(error));
    QVERIFY(!client.signInDialog());
    QCOMPARE(contents(real.location.path), garbage);
}

QTEST_MAIN(DemoStoreTest)
#include "DemoStoreTest.moc"
