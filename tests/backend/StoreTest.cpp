#include "backend/store/Database.h"
#include "backend/store/PasswordHash.h"
#include "backend/store/Schema.h"
#include "backend/store/StoreError.h"
#include "backend/store/Transaction.h"
#include "tests/backend/StoreFixture.h"
#include "tests/support/TestCase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

using namespace backend;

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

bool put(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

int modeOf(const QString& path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0
               ? static_cast<int>(status.st_mode & 07777)
               : -1;
}

// What signing in and administrating say about a store that should be refused.
QStringList refusals(const StoreFixture& fixture)
{
    QString error;
    const bool opened = StoreAdmin::open(fixture.options(), &error) != nullptr;
    const SignInResult result =
        Session::signIn(fixture.options(), name::alice, QStringLiteral("pw-alice"));
    return {opened ? QStringLiteral("opened") : error,
            result.session ? QStringLiteral("signed in") : result.error};
}

} // namespace

class StoreTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aNewStoreIsReadableByItsOwnerOnly()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        QCOMPARE(modeOf(fixture.path()), 0600);
        QCOMPARE(modeOf(QFileInfo(fixture.path()).absolutePath()), 0700);
    }

    void theJournalIsReadableByItsOwnerOnly()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        Database database(fixture.options());
        database.open(Database::Creation::Forbidden, Database::Inspection::Brief);
        Transaction transaction(database, Transaction::Mode::Write);
        database.statement("users.touch").run(1);
        QCOMPARE(modeOf(fixture.path() + QStringLiteral("-journal")), 0600);
        QVERIFY(!QFile::exists(fixture.path() + QStringLiteral("-wal")));
    }

    void aStoreThatOthersCouldReadIsClosedToThem()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        QVERIFY(::chmod(QFile::encodeName(fixture.path()).constData(), 0644) == 0);
        QVERIFY(fixture.signIn(name::alice));
        QCOMPARE(modeOf(fixture.path()), 0600);
    }

    void everyCommitReachesTheDiskThroughARollbackJournal()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        Database database(fixture.options());
        database.open(Database::Creation::Forbidden, Database::Inspection::Brief);
        QCOMPARE(database.execute(QStringLiteral("PRAGMA journal_mode")).toString(),
                 QStringLiteral("delete"));
        QCOMPARE(database.execute(QStringLiteral("PRAGMA synchronous")).toInt(), 2);
        QCOMPARE(database.execute(QStringLiteral("PRAGMA foreign_keys")).toInt(), 1);
    }

    void aStoreOfAnOlderSchemaIsBroughtUpToDate()
    {
        StoreFixture fixture;
        {
            QVERIFY(put(fixture.path(), QByteArray()));
            Database database(fixture.options());
            database.open(Database::Creation::Allowed, Database::Inspection::Brief);
        }
        {
            // Back to the first version, as an older program would have left it.
            Database database(fixture.options());
            database.open(Database::Creation::Forbidden, Database::Inspection::Brief);
            database.execute(QStringLiteral("DROP TABLE sign_in_failures"));
            database.execute(QStringLiteral("UPDATE schema_version SET version = 1"));
        }
        QVERIFY(fixture.fill());
        QVERIFY(fixture.signIn(name::alice));
        Database database(fixture.options());
        database.open(Database::Creation::Forbidden, Database::Inspection::Whole);
        QCOMPARE(database.execute(QStringLiteral("SELECT version FROM schema_version")).toInt(),
                 Schema::currentVersion);
    }

    void aNewerSchemaIsRefusedAndLeftAsItIs()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        {
            Database database(fixture.options());
            database.open(Database::Creation::Forbidden, Database::Inspection::Brief);
            database.execute(QStringLiteral("UPDATE schema_version SET version = 99"));
        }
        const QByteArray before = contentOf(fixture.path());
        const QString text = QStringLiteral("授权数据库由更新版本的程序建立，请升级后再打开");
        QCOMPARE(refusals(fixture), QStringList({text, text}));
        QCOMPARE(contentOf(fixture.path()), before);
    }

    void damageIsFoundRefusedAndLeftAsItIs_data()
    {
        QTest::addColumn<int>("offset");
        QTest::addColumn<int>("length");
        QTest::newRow("first table page") << 4096 << 4096;
        QTest::newRow("schema") << 100 << 2000;
        QTest::newRow("late page") << 4096 * 12 << 4096;
    }

    void damageIsFoundRefusedAndLeftAsItIs()
    {
        QFETCH(int, offset);
        QFETCH(int, length);
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        QByteArray bytes = contentOf(fixture.path());
        QVERIFY(bytes.size() > offset + length);
        bytes.replace(offset, length, QByteArray(length, '\x5a'));
        QVERIFY(put(fixture.path(), bytes));
        const QString text = QStringLiteral("授权数据库已损坏，文件保持原样，请从备份恢复");
        QCOMPARE(refusals(fixture), QStringList({text, text}));
        QCOMPARE(contentOf(fixture.path()), bytes);
    }

    void aTruncatedStoreIsRefusedAndLeftAsItIs()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const QByteArray bytes = contentOf(fixture.path()).left(4096 * 3 + 17);
        QVERIFY(put(fixture.path(), bytes));
        const QString text = QStringLiteral("授权数据库已损坏，文件保持原样，请从备份恢复");
        QCOMPARE(refusals(fixture), QStringList({text, text}));
        QCOMPARE(contentOf(fixture.path()), bytes);
    }

    void aForeignFileIsRefusedAndLeftAsItIs()
    {
        StoreFixture fixture;
        const QByteArray bytes("Dear diary, this is no database at all.\n");
        QVERIFY(put(fixture.path(), bytes));
        const QString text = QStringLiteral("所选文件不是授权数据库");
        QCOMPARE(refusals(fixture), QStringList({text, text}));
        QCOMPARE(contentOf(fixture.path()), bytes);
    }

    void aForeignDatabaseIsRefusedAndLeftAsItIs()
    {
        StoreFixture fixture;
        QVERIFY(put(fixture.path(), QByteArray()));
        {
            QSqlDatabase database =
                QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("foreign"));
            database.setDatabaseName(fixture.path());
            QVERIFY(database.open());
            QSqlQuery(QStringLiteral("CREATE TABLE recipes (name TEXT)"), database);
        }
        QSqlDatabase::removeDatabase(QStringLiteral("foreign"));
        const QByteArray before = contentOf(fixture.path());
        const QString text = QStringLiteral("所选文件不是授权数据库");
        QCOMPARE(refusals(fixture), QStringList({text, text}));
        QCOMPARE(contentOf(fixture.path()), before);
    }

    void signingInNeverMakesAStore()
    {
        StoreFixture fixture;
        const SignInResult result =
            Session::signIn(fixture.options(), name::alice, QStringLiteral("pw-alice"));
        QVERIFY(!result.session);
        QCOMPARE(result.error, QStringLiteral("授权数据库不存在"));
        QVERIFY(!QFile::exists(fixture.path()));
    }

    void aStoreInAnUnwritableFolderSaysSo()
    {
        StoreFixture fixture;
        StoreOptions options = fixture.options();
        options.location = StoreLocation::parse(QStringLiteral("/proc/authsetting/store.db"));
        QString error;
        QVERIFY(!StoreAdmin::open(options, &error));
        QVERIFY2(!error.isEmpty(), "no reason given");
    }

    void theAuditTrailCannotBeAltered_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::newRow("update") << QStringLiteral("UPDATE audit_trail SET error = 'x'");
        QTest::newRow("delete") << QStringLiteral("DELETE FROM audit_trail");
    }

    void theAuditTrailCannotBeAltered()
    {
        QFETCH(QString, sql);
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        QVERIFY(fixture.signIn(name::alice));
        Database database(fixture.options());
        database.open(Database::Creation::Forbidden, Database::Inspection::Brief);
        const QString count = QStringLiteral("SELECT COUNT(*) FROM audit_trail WHERE error = ''");
        const int before = database.execute(count).toInt();
        QVERIFY(before > 0);
        QVERIFY_THROWS_EXCEPTION(StoreError, database.execute(sql));
        QCOMPARE(database.execute(count).toInt(), before);
    }

    void onlyAHashOfTheDigestIsKept()
    {
        const PasswordHash hasher(true);
        const QString digest = passwordDigest(QStringLiteral(" secret "));
        QCOMPARE(digest, QStringLiteral("e5e9fa1ba31ecd1ae84f75caaa474f3a663f05f4"));
        const QString hash = hasher.hash(digest);
        QVERIFY(hash.startsWith(QStringLiteral("$argon2id$")));
        QVERIFY(hash != hasher.hash(digest));
        QVERIFY(hasher.verify(hash, digest));
        QVERIFY(hasher.verify(hash, digest.toUpper()));
        QVERIFY(!hasher.verify(hash, passwordDigest(QStringLiteral("other"))));
        QVERIFY(!hasher.verify(QStringLiteral("no hash"), digest));

        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const QByteArray bytes = contentOf(fixture.path());
        QVERIFY(!bytes.contains("pw-alice"));
        QVERIFY(!bytes.contains(passwordDigest(QStringLiteral("pw-alice")).toLatin1()));
    }

    void aRealPasswordHashCostsWhatItShould()
    {
        const QString hash = PasswordHash(false).hash(passwordDigest(QStringLiteral("x")));
        QVERIFY2(hash.startsWith(QStringLiteral("$argon2id$v=19$m=65536,t=2,p=1$")),
                 qPrintable(hash));
    }

    void aLocationIsReadFromItsText()
    {
        QCOMPARE(StoreLocation::parse(QStringLiteral("/a/b.db")).path, QStringLiteral("/a/b.db"));
        QCOMPARE(StoreLocation::parse(QStringLiteral("sqlite:/a/b.db")).path,
                 QStringLiteral("/a/b.db"));
        QVERIFY(QDir::isAbsolutePath(StoreLocation::parse(QStringLiteral("b.db")).path));
        QVERIFY(!StoreLocation::parse(QString()).isValid());
        QVERIFY(!StoreLocation::parse(QStringLiteral("oracle://host/db")).isValid());
        QVERIFY(!StoreLocation::parse(QStringLiteral("sqlite:")).isValid());
    }
};

int main(int argc, char** argv)
{
    return runTest<StoreTest>(argc, argv);
}

#include "StoreTest.moc"
