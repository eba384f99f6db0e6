#include "backend/sealedfile/SafeFileWriter.h"

#include "tests/backend/ChildProcess.h"
#include "tests/support/TestCase.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <cerrno>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using backend::SafeFileWriter;
using Published = SafeFileWriter::Published;
using Replace = SafeFileWriter::Replace;

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

void put(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QStringList entriesOf(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                  QDir::NoDotAndDotDot);
}

mode_t modeOf(const QString& path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

} // namespace

class SafeFileWriterTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void writesUnderTheNameOnlyWhenPublished();
    void leavesNothingWithoutPublishing();
    void keepsTheFileToItsOwner();
    void replacesWhenAllowed();
    void keepsAnExistingFileWhenNotAllowed();
    void neverFollowsALink();
    void takesAnyName_data();
    void takesAnyName();
    void refusesNamesThatAreNone_data();
    void refusesNamesThatAreNone();
    void takesANameWithoutFolder();
    void failsInAFolderItMayNotWrite();
    void failsOnAFullDisk();
    void failsWhenTheFolderIsGone();
    void keepsAFolderInItsPlace();
    void writesAgainAfterAFailure();
    void publishesOnlyWhatIsPrepared();
};

void SafeFileWriterTest::writesUnderTheNameOnlyWhenPublished()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("grants.taa"));
    SafeFileWriter writer;
    QVERIFY(writer.prepare(path, "content"));
    QVERIFY(!QFile::exists(path));
    QCOMPARE(entriesOf(folder.path()).size(), 1);
    QCOMPARE(writer.publish(Replace::Refused), Published::Yes);
    QCOMPARE(entriesOf(folder.path()), QStringList{QStringLiteral("grants.taa")});
    QCOMPARE(contentOf(path), QByteArray("content"));
    QCOMPARE(writer.errorCode(), 0);
    QVERIFY(writer.errorText().isEmpty());
}

void SafeFileWriterTest::leavesNothingWithoutPublishing()
{
    const QTemporaryDir folder;
    {
        SafeFileWriter writer;
        QVERIFY(writer.prepare(folder.filePath(QStringLiteral("one")), "1"));
        // A second preparation takes the place of the first.
        QVERIFY(writer.prepare(folder.filePath(QStringLiteral("two")), "2"));
        QCOMPARE(entriesOf(folder.path()).size(), 1);
    }
    QVERIFY(entriesOf(folder.path()).isEmpty());
    SafeFileWriter writer;
    QVERIFY(writer.prepare(folder.filePath(QStringLiteral("three")), "3"));
    writer.discard();
    QVERIFY(entriesOf(folder.path()).isEmpty());
}

void SafeFileWriterTest::keepsTheFileToItsOwner()
{
    for (const mode_t mask : {mode_t(0), mode_t(022), mode_t(0777)}) {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("grants.taa"));
        const mode_t before = ::umask(mask);
        const auto restore = qScopeGuard([before] { ::umask(before); });
        SafeFileWriter writer;
        QVERIFY(writer.prepare(path, "content"));
        QCOMPARE(modeOf(folder.filePath(entriesOf(folder.path()).constFirst())), mode_t(0600));
        QCOMPARE(writer.publish(Replace::Refused), Published::Yes);
        QCOMPARE(modeOf(path), mode_t(0600));
    }
}

void SafeFileWriterTest::replacesWhenAllowed()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("grants.taa"));
    put(path, "a longer content than the new one");
    QVERIFY(QFile::setPermissions(path, QFile::Permissions(0x6666)));
    SafeFileWriter writer;
    QVERIFY(writer.prepare(path, "new"));
    QCOMPARE(contentOf(path), QByteArray("a longer content than the new one"));
    QCOMPARE(writer.publish(Replace::Allowed), Published::Yes);
    QCOMPARE(contentOf(path), QByteArray("new"));
    QCOMPARE(modeOf(path), mode_t(0600));
    QCOMPARE(entriesOf(folder.path()).size(), 1);
}

void SafeFileWriterTest::keepsAnExistingFileWhenNotAllowed()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("grants.taa"));
    put(path, "old");
    {
        SafeFileWriter writer;
        QVERIFY(writer.prepare(path, "new"));
        QCOMPARE(writer.publish(Replace::Refused), Published::Exists);
        QCOMPARE(writer.errorCode(), EEXIST);
        QVERIFY(!writer.errorText().isEmpty());
        QCOMPARE(contentOf(path), QByteArray("old"));
        // The prepared file is still there for another attempt.
        QVERIFY(QFile::remove(path));
        QCOMPARE(writer.publish(Replace::Refused), Published::Yes);
        QCOMPARE(contentOf(path), QByteArray("new"));
        QVERIFY(writer.prepare(path, "newer"));
        QCOMPARE(writer.publish(Replace::Refused), Published::Exists);
    }
    QCOMPARE(entriesOf(folder.path()).size(), 1);
    QCOMPARE(contentOf(path), QByteArray("new"));
}

void SafeFileWriterTest::neverFollowsALink()
{
    const QTemporaryDir folder;
    const QString victim = folder.filePath(QStringLiteral("victim"));
    const QString link = folder.filePath(QStringLiteral("grants.taa"));
    const QString dangling = folder.filePath(QStringLiteral("dangling.taa"));
    put(victim, "precious");
    QVERIFY(QFile::link(victim, link));
    QVERIFY(QFile::link(folder.filePath(QStringLiteral("nowhere")), dangling));

    SafeFileWriter writer;
    for (const QString& path : {link, dangling}) {
        QVERIFY(writer.prepare(path, "new"));
        QCOMPARE(writer.publish(Replace::Refused), Published::Exists);
        QVERIFY(QFileInfo(path).isSymLink());
        QCOMPARE(writer.publish(Replace::Allowed), Published::Yes);
        QVERIFY(!QFileInfo(path).isSymLink());
        QCOMPARE(contentOf(path), QByteArray("new"));
    }
    QCOMPARE(contentOf(victim), QByteArray("precious"));
    QCOMPARE(entriesOf(folder.path()).size(), 3);
}

void SafeFileWriterTest::takesAnyName_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("Chinese") << QStringLiteral("授权文件 2024-01-01.taa");
    QTest::newRow("combining marks") << QStringLiteral("cafe\u0301.taa");
    QTest::newRow("outside the basic plane") << QStringLiteral("\U0001F600.taa");
    QTest::newRow("right to left") << QStringLiteral("a\u202eaat.exe");
    QTest::newRow("line end") << QStringLiteral("a\nb.taa");
    QTest::newRow("as long as a name can be") << QString(255, QLatin1Char('n'));
    QTest::newRow("leading dash") << QStringLiteral("-rf");
    QTest::newRow("percent") << QStringLiteral("%1%s.taa");
}

void SafeFileWriterTest::takesAnyName()
{
    QFETCH(QString, name);
    const QTemporaryDir folder;
    SafeFileWriter writer;
    QVERIFY(writer.prepare(folder.filePath(name), "content"));
    QCOMPARE(writer.publish(Replace::Refused), Published::Yes);
    QCOMPARE(entriesOf(folder.path()), QStringList{name});
    QCOMPARE(contentOf(folder.filePath(name)), QByteArray("content"));
}

void SafeFileWriterTest::refusesNamesThatAreNone_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("error");
    QTest::newRow("empty") << QString() << EINVAL;
    QTest::newRow("folder") << QStringLiteral("sub/") << EINVAL;
    QTest::newRow("zero character")
        << (QStringLiteral("a.taa") + QChar(0) + QStringLiteral("x")) << EINVAL;
    QTest::newRow("missing folder") << QStringLiteral("no/such/folder/a.taa") << ENOENT;
    QTest::newRow("below a file") << QStringLiteral("file/a.taa") << ENOTDIR;
}

void SafeFileWriterTest::refusesNamesThatAreNone()
{
    QFETCH(QString, name);
    QFETCH(int, error);
    const QTemporaryDir folder;
    put(folder.filePath(QStringLiteral("file")), "x");
    const QString path = name.isEmpty() ? name : folder.filePath(name);
    SafeFileWriter writer;
    QVERIFY(!writer.prepare(path, "content"));
    QCOMPARE(writer.errorCode(), error);
    QCOMPARE(writer.publish(Replace::Allowed), Published::No);
    QCOMPARE(entriesOf(folder.path()).size(), 1);
}

void SafeFileWriterTest::takesANameWithoutFolder()
{
    const QTemporaryDir folder;
    const QString before = QDir::currentPath();
    const auto restore = qScopeGuard([before] { QDir::setCurrent(before); });
    QVERIFY(QDir::setCurrent(folder.path()));
    SafeFileWriter writer;
    QVERIFY(writer.prepare(QStringLiteral("grants.taa"), "content"));
    QCOMPARE(writer.publish(Replace::Refused), Published::Yes);
    QCOMPARE(entriesOf(folder.path()), QStringList{QStringLiteral("grants.taa")});
}

void SafeFileWriterTest::failsInAFolderItMayNotWrite()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("closed")));
    const QString closed = folder.filePath(QStringLiteral("closed"));
    QCOMPARE(::chmod(QFile::encodeName(folder.path()).constData(), 0711), 0);
    QCOMPARE(::chmod(QFile::encodeName(closed).constData(), 0555), 0);
    const int result = inChildProcess([&] {
        // The rights do not bind the administrator.
        if (::geteuid() == 0 && ::setuid(65534) != 0)
            return 1;
        SafeFileWriter writer;
        if (writer.prepare(closed + QStringLiteral("/grants.taa"), "content"))
            return 2;
        return writer.errorCode() == EACCES ? 0 : 3;
    });
    QCOMPARE(result, 0);
    QVERIFY(entriesOf(closed).isEmpty());
}

void SafeFileWriterTest::failsOnAFullDisk()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("grants.taa"));
    put(path, "old");
    const int result = inChildProcess([&] {
        // A limit on file sizes stops the write half-way, as a full disk does.
        const rlimit limit = {10'000, 10'000};
        if (::signal(SIGXFSZ, SIG_IGN) == SIG_ERR || ::setrlimit(RLIMIT_FSIZE, &limit) != 0)
            return 1;
        SafeFileWriter writer;
        if (writer.prepare(path, QByteArray(20'000, 'x')))
            return 2;
        if (writer.errorCode() != EFBIG || writer.errorText().isEmpty())
            return 3;
        return writer.publish(Replace::Allowed) == Published::No ? 0 : 4;
    });
    QCOMPARE(result, 0);
    QCOMPARE(entriesOf(folder.path()), QStringList{QStringLiteral("grants.taa")});
    QCOMPARE(contentOf(path), QByteArray("old"));
}

void SafeFileWriterTest::failsWhenTheFolderIsGone()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("sub")));
    const QString sub = folder.filePath(QStringLiteral("sub"));
    SafeFileWriter writer;
    QVERIFY(writer.prepare(sub + QStringLiteral("/grants.taa"), "content"));
    QVERIFY(QDir(sub).removeRecursively());
    QCOMPARE(writer.publish(Replace::Refused), Published::No);
    QCOMPARE(writer.errorCode(), ENOENT);
}

void SafeFileWriterTest::keepsAFolderInItsPlace()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("grants.taa"));
    QVERIFY(QDir().mkdir(path));
    {
        SafeFileWriter writer;
        QVERIFY(writer.prepare(path, "content"));
        QCOMPARE(writer.publish(Replace::Refused), Published::Exists);
        QCOMPARE(writer.publish(Replace::Allowed), Published::No);
        QCOMPARE(writer.errorCode(), EISDIR);
    }
    QVERIFY(QFileInfo(path).isDir());
    QCOMPARE(entriesOf(folder.path()).size(), 1);
}

void SafeFileWriterTest::writesAgainAfterAFailure()
{
    const QTemporaryDir folder;
    SafeFileWriter writer;
    QVERIFY(!writer.prepare(QString(), "content"));
    QVERIFY(writer.prepare(folder.filePath(QStringLiteral("empty")), {}));
    QCOMPARE(writer.errorCode(), 0);
    QCOMPARE(writer.publish(Replace::Refused), Published::Yes);
    QCOMPARE(contentOf(folder.filePath(QStringLiteral("empty"))), QByteArray());
}

void SafeFileWriterTest::publishesOnlyWhatIsPrepared()
{
    const QTemporaryDir folder;
    SafeFileWriter writer;
    QCOMPARE(writer.publish(Replace::Allowed), Published::No);
    QVERIFY(writer.prepare(folder.filePath(QStringLiteral("a")), "a"));
    QCOMPARE(writer.publish(Replace::Allowed), Published::Yes);
    QCOMPARE(writer.publish(Replace::Allowed), Published::No);
    QCOMPARE(contentOf(folder.filePath(QStringLiteral("a"))), QByteArray("a"));
}

int main(int argc, char** argv)
{
    return runTest<SafeFileWriterTest>(argc, argv);
}

#include "SafeFileWriterTest.moc"
