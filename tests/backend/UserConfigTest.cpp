#include "backend/config/UserConfig.h"

#include "authsetting/services/AccountKey.h"
#include "backend/config/Config.h"
#include "tests/backend/LogLines.h"
#include "tests/support/TestCase.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <boost/make_shared.hpp>

#include <sys/stat.h>

using backend::AccountSnapshot;
using backend::ClientConfig;
using backend::ClientUserConfig;
using backend::TableLayoutFile;

namespace {

using Accounts = QVector<boost::shared_ptr<GW::CAccount>>;
using Layouts = QMap<int, QString>;

const QString user = QStringLiteral("王芳/../x");
const Layouts someLayouts = {{4194321, QStringLiteral("layout \"text\"\n列;1,2,3")},
                             {-1, QString()}};

boost::shared_ptr<GW::CAccount> account(int platformId, const std::string& accountId)
{
    auto record = boost::make_shared<GW::CAccount>();
    record->platformId = platformId;
    record->brokerId = "9999";
    record->accountId = accountId;
    return record;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

bool put(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

// A sound file of `user` with one entry changed.
QByteArray fileWith(const QString& key, const QJsonValue& value)
{
    QJsonObject root = {
        {QStringLiteral("format"), QStringLiteral("table-layouts")},
        {QStringLiteral("version"), 1},
        {QStringLiteral("user"), user},
        {QStringLiteral("layouts"), QJsonObject{{QStringLiteral("7"), QStringLiteral("x")}}}};
    root.insert(key, value);
    return QJsonDocument(root).toJson();
}

} // namespace

class UserConfigTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void findsAccountsByKey();
    void takesTheNextAccounts();
    void findsTheFirstOfTwoEqualAccounts();
    void findsBrokersByPlatformAndIdentifier();
    void findsAmongManyAccounts();
    void knowsPlatforms();
    void keepsLayoutsBetweenSessions();
    void keepsLayoutsOfUsersApart();
    void keepsLayoutsToTheirOwner();
    void savesOnlyChanges();
    void keepsNothingWithoutAFolder();
    void startsAfreshFromAnUnusableFile_data();
    void startsAfreshFromAnUnusableFile();
    void leavesAnUnusableFileAloneUntilItSaves();
    void readsASoundFile();
    void reportsThatItCannotSave();
    void keepsTheOldFileWhenItCannotSave();
};

void UserConfigTest::findsAccountsByKey()
{
    const auto own = account(1, "1001");
    const auto sub = account(1, "1002");
    ClientUserConfig config(user, QString());
    QCOMPARE(config.userName, user);
    QVERIFY(!config.getAccountData(own->key()));
    config.setAccounts(AccountSnapshot({own, sub}, {sub->key()}, {own->key()}));
    QCOMPARE(config.accounts, (Accounts{own, sub}));
    QCOMPARE(config.getAccountData(own->key()), own);
    QCOMPARE(config.getAccountData(GW::genAccountKeyQs(*sub)), sub);
    QVERIFY(!config.getAccountData(account(2, "1001")->key()));
    QVERIFY(!config.getAccountData(QString()));
    QVERIFY(config.isSubAccount(sub->key()));
    QVERIFY(!config.isSubAccount(own->key()));
    QVERIFY(config.hasSubAccount(own->key()));
    QVERIFY(!config.hasSubAccount(sub->key()));
    QVERIFY(!config.hasSubAccount(QStringLiteral("no key")));
}

void UserConfigTest::takesTheNextAccounts()
{
    const auto before = account(1, "1001");
    const auto after = boost::make_shared<GW::CAccount>(*before);
    after->authType = mbservice::AUTH_TYPE_GRANTED_TO_OTHER;
    ClientUserConfig config(user, QString());
    config.setAccounts(AccountSnapshot({before}, {before->key()}, {}));
    const auto shown = config.getAccountData(before->key());
    config.setAccounts(AccountSnapshot({after}, {}, {}));
    QCOMPARE(config.getAccountData(before->key()), after);
    QVERIFY(!config.isSubAccount(before->key()));
    // What a page holds is what it has shown.
    QCOMPARE(shown->authType, mbservice::AUTH_TYPE_UNKNOWN);
    config.setAccounts(AccountSnapshot());
    QVERIFY(config.accounts.isEmpty());
    QVERIFY(!config.getAccountData(before->key()));
}

void UserConfigTest::findsTheFirstOfTwoEqualAccounts()
{
    const auto first = account(1, "1001");
    const auto second = account(1, "1001");
    ClientUserConfig config(user, QString());
    config.setAccounts(AccountSnapshot({first, second}, {}, {}));
    QCOMPARE(config.accounts.size(), 2);
    QCOMPARE(config.getAccountData(first->key()), first);
}

void UserConfigTest::findsBrokersByPlatformAndIdentifier()
{
    ClientUserConfig config(user, QString());
    config.setBrokers({{1, "66", "期货甲"}, {2, "66", "期货乙"}}, {{1, "66", "证券甲"}});
    QCOMPARE(config.getBrokerSetting(1, "66").name, std::string("期货甲"));
    QCOMPARE(config.getBrokerSetting(2, "66").name, std::string("期货乙"));
    QCOMPARE(config.getStkBrokerSetting(1, "66").name, std::string("证券甲"));
    const mbservice::CBrokerInfo unknown = config.getStkBrokerSetting(2, "66");
    QCOMPARE(unknown.platformId, 2);
    QCOMPARE(unknown.brokerId, std::string("66"));
    QVERIFY(unknown.name.empty());
    config.setBrokers({}, {});
    QVERIFY(config.getBrokerSetting(1, "66").name.empty());
}

void UserConfigTest::findsAmongManyAccounts()
{
    Accounts many;
    QVector<mbservice::CBrokerInfo> brokers;
    QSet<QString> subAccounts;
    for (int i = 0; i < 20'000; ++i) {
        many.append(account(i % 10, std::to_string(i)));
        brokers.append({i % 10, std::to_string(i), "broker " + std::to_string(i)});
        if (i % 2 == 0)
            subAccounts.insert(many.constLast()->key());
    }
    ClientUserConfig config(user, QString());
    config.setAccounts(AccountSnapshot(many, subAccounts, {}));
    config.setBrokers(brokers, {});
    for (int i = 0; i < many.size(); ++i) {
        const QString key = many.at(i)->key();
        QVERIFY(config.getAccountData(key) == many.at(i));
        QVERIFY(config.isSubAccount(key) == (i % 2 == 0));
        QVERIFY(config.getBrokerSetting(i % 10, std::to_string(i)).name ==
                "broker " + std::to_string(i));
    }
}

void UserConfigTest::knowsPlatforms()
{
    ClientConfig config;
    config.setPlatforms({{1, "期货一"}, {2, "期货二"}}, {{1, "证券一"}});
    QCOMPARE(config.getPlatformSetting(2).name, std::string("期货二"));
    QCOMPARE(config.getStkPlatformSetting(1).name, std::string("证券一"));
    QVERIFY(config.getStkPlatformSetting(2).name.empty());
    QCOMPARE(config.getStkPlatformSetting(2).platformId, 2);
    QCOMPARE(config.platforms.keys(), (QList<int>{1, 2}));
    QCOMPARE(config.stkPlatforms.keys(), QList<int>{1});
    config.setPlatforms({}, {});
    QVERIFY(config.platforms.isEmpty() && config.stkPlatforms.isEmpty());
}

void UserConfigTest::keepsLayoutsBetweenSessions()
{
    const QTemporaryDir folder;
    {
        ClientUserConfig config(user, folder.path());
        QVERIFY(config.tableLayouts.isEmpty());
        config.tableLayouts = someLayouts;
        QVERIFY(config.saveTableLayouts());
    }
    ClientUserConfig config(user, folder.path());
    QCOMPARE(config.tableLayouts, someLayouts);
    config.tableLayouts.remove(-1);
    QVERIFY(config.saveTableLayouts());
    QCOMPARE(ClientUserConfig(user, folder.path()).tableLayouts.keys(), QList<int>{4194321});
}

void UserConfigTest::keepsLayoutsOfUsersApart()
{
    const QTemporaryDir folder;
    const QStringList users = {user,
                               QStringLiteral("A"),
                               QStringLiteral("a"),
                               QString(),
                               QString(10'000, QLatin1Char('u')),
                               QStringLiteral("..")};
    for (const QString& name : users) {
        ClientUserConfig config(name, folder.path());
        config.tableLayouts.insert(1, name + QStringLiteral("'s layout"));
        QVERIFY(config.saveTableLayouts());
    }
    for (const QString& name : users) {
        QCOMPARE(ClientUserConfig(name, folder.path()).tableLayouts.value(1),
                 QString(name + QStringLiteral("'s layout")));
    }
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), users.size());
}

void UserConfigTest::keepsLayoutsToTheirOwner()
{
    const QTemporaryDir folder;
    TableLayoutFile file(folder.path(), user);
    QVERIFY(file.save(someLayouts));
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(file.path()).constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777, mode_t(0600));
}

void UserConfigTest::savesOnlyChanges()
{
    const QTemporaryDir folder;
    ClientUserConfig config(user, folder.path());
    QVERIFY(config.saveTableLayouts());
    QVERIFY(QDir(folder.path()).isEmpty());
    config.tableLayouts = someLayouts;
    QVERIFY(config.saveTableLayouts());
    const QString path = TableLayoutFile(folder.path(), user).path();
    QVERIFY(QFile::remove(path));
    QVERIFY(config.saveTableLayouts());
    QVERIFY(!QFile::exists(path));
    config.tableLayouts.clear();
    QVERIFY(config.saveTableLayouts());
    QVERIFY(QFile::exists(path));
}

void UserConfigTest::keepsNothingWithoutAFolder()
{
    ClientUserConfig config(user, QString());
    config.tableLayouts = someLayouts;
    QVERIFY(config.saveTableLayouts());
    QVERIFY(ClientUserConfig(user, QString()).tableLayouts.isEmpty());
}

void UserConfigTest::startsAfreshFromAnUnusableFile_data()
{
    QTest::addColumn<QByteArray>("content");
    const auto layouts = QStringLiteral("layouts");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("\x7f\x45LF\0\0", 6);
    QTest::newRow("cut short") << fileWith(layouts, QJsonObject()).chopped(5);
    QTest::newRow("an array") << QByteArray("[1, 2]");
    QTest::newRow("nested deeply") << QByteArray(100'000, '[');
    QTest::newRow("too large") << QByteArray(fileWith(layouts, QJsonObject()) +
                                             QByteArray(1 << 20, ' '));
    QTest::newRow("another format") << fileWith(QStringLiteral("format"), QStringLiteral("x"));
    QTest::newRow("newer") << fileWith(QStringLiteral("version"), 2);
    QTest::newRow("version as text") << fileWith(QStringLiteral("version"), QStringLiteral("1"));
    QTest::newRow("another user's") << fileWith(QStringLiteral("user"), QStringLiteral("x"));
    QTest::newRow("layouts as text") << fileWith(layouts, QStringLiteral("x"));
    QTest::newRow("table without number")
        << fileWith(layouts, QJsonObject{{QStringLiteral("x"), QStringLiteral("y")}});
    QTest::newRow("table out of range")
        << fileWith(layouts, QJsonObject{{QStringLiteral("4294967296"), QStringLiteral("y")}});
    QTest::newRow("layout as number") << fileWith(layouts, QJsonObject{{QStringLiteral("1"), 1}});
}

void UserConfigTest::startsAfreshFromAnUnusableFile()
{
    QFETCH(QByteArray, content);
    const QTemporaryDir folder;
    const TableLayoutFile names(folder.path(), user);
    QVERIFY(put(names.path(), content));
    {
        LogLines log;
        ClientUserConfig config(user, folder.path());
        QVERIFY(config.tableLayouts.isEmpty());
        const QList<QByteArray> lines = log.lines();
        QCOMPARE(lines.size(), 1);
        QVERIFY2(lines.constFirst().contains("WARN"), lines.constFirst().constData());
        QVERIFY(lines.constFirst().contains(QFile::encodeName(names.path())));
        config.tableLayouts = someLayouts;
        QVERIFY(config.saveTableLayouts());
    }
    QCOMPARE(contentOf(names.unreadablePath()), content);
    LogLines log;
    QCOMPARE(ClientUserConfig(user, folder.path()).tableLayouts, someLayouts);
    QVERIFY(log.lines().isEmpty());
}

void UserConfigTest::leavesAnUnusableFileAloneUntilItSaves()
{
    const QTemporaryDir folder;
    const TableLayoutFile names(folder.path(), user);
    QVERIFY(put(names.path(), "damaged"));
    LogLines log;
    ClientUserConfig config(user, folder.path());
    QVERIFY(config.saveTableLayouts());
    QCOMPARE(contentOf(names.path()), QByteArray("damaged"));
    QVERIFY(!QFile::exists(names.unreadablePath()));
}

// The format as it is on users' disks.
void UserConfigTest::readsASoundFile()
{
    const QTemporaryDir folder;
    TableLayoutFile file(folder.path(), QStringLiteral("li.wei"));
    QCOMPARE(
        QFileInfo(file.path()).fileName(),
        QStringLiteral("layouts-"
                       "0a5df1f73a7764060af76d8e74f0fd13e78d244f122309802ea16e1042d61164.json"));
    QVERIFY(put(file.path(),
                R"({"format": "table-layouts", "version": 1, "user": "li.wei", "later": true,
                    "layouts": {"4194321": "列"}})"));
    QCOMPARE(file.load(), (Layouts{{4194321, QStringLiteral("列")}}));
}

void UserConfigTest::reportsThatItCannotSave()
{
    const QTemporaryDir folder;
    LogLines log;
    ClientUserConfig config(user, folder.filePath(QStringLiteral("missing")));
    config.tableLayouts = someLayouts;
    QVERIFY(!config.saveTableLayouts());
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("missing")));
    // A failed save does not count as saved.
    QVERIFY(config.saveTableLayouts());
    QCOMPARE(log.lines().size(), 1);
}

void UserConfigTest::keepsTheOldFileWhenItCannotSave()
{
    const QTemporaryDir folder;
    ClientUserConfig config(user, folder.path());
    config.tableLayouts = someLayouts;
    QVERIFY(config.saveTableLayouts());
    LogLines log;
    config.tableLayouts.insert(1, QString(2 << 20, QLatin1Char('x')));
    QVERIFY(!config.saveTableLayouts());
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(ClientUserConfig(user, folder.path()).tableLayouts, someLayouts);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

int main(int argc, char** argv)
{
    return runTest<UserConfigTest>(argc, argv);
}

#include "UserConfigTest.moc"
