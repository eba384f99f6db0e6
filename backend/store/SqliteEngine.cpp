#include "backend/store/SqliteEngine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace backend {

namespace {

constexpr char fileMagic[] = "SQLite format 3";
constexpr qint64 fileMagicSize = sizeof fileMagic;

StoreFailure systemFailure(int error)
{
    using Kind = StoreFailure::Kind;
    Kind kind = Kind::Io;
    if (error == ENOSPC || error == EDQUOT)
        kind = Kind::Full;
    else if (error == EACCES || error == EPERM || error == EROFS)
        kind = Kind::ReadOnly;
    else if (error == ENOENT || error == ENOTDIR)
        kind = Kind::Missing;
    return {kind, QString::fromLocal8Bit(std::strerror(error))};
}

// Parents that are missing are made too, the store's own folder for its owner alone.
bool makePrivateFolder(const QString& folder)
{
    if (QFileInfo::exists(folder))
        return true;
    QDir().mkpath(QFileInfo(folder).absolutePath());
    return ::mkdir(QFile::encodeName(folder).constData(), 0700) == 0 || errno == EEXIST;
}

} // namespace

SqliteEngine::SqliteEngine(const StoreOptions& options)
    : m_path(options.location.path), m_busyTimeoutMs(options.busyTimeoutMs)
{
}

QString SqliteEngine::driver() const
{
    return QStringLiteral("QSQLITE");
}

StoreFailure SqliteEngine::createFile() const
{
    if (!makePrivateFolder(QFileInfo(m_path).absolutePath()))
        return systemFailure(errno);
    // The engine gives its journal the mode of this file, so it has to be right from the start.
    const int descriptor =
        ::open(QFile::encodeName(m_path).constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return errno == EEXIST ? StoreFailure() : systemFailure(errno);
    ::close(descriptor);
    return {};
}

StoreFailure SqliteEngine::prepare(bool createMissing)
{
    const QByteArray name = QFile::encodeName(m_path);
    struct stat status = {};
    if (::stat(name.constData(), &status) != 0) {
        if (errno != ENOENT || !createMissing)
            return systemFailure(errno);
        return createFile();
    }
    if (!S_ISREG(status.st_mode))
        return {StoreFailure::Kind::NotAStore, QStringLiteral("not a regular file")};
    if (status.st_size > 0) {
        QFile file(m_path);
        if (!file.open(QIODevice::ReadOnly))
            return systemFailure(errno);
        if (file.read(fileMagicSize) != QByteArray(fileMagic, fileMagicSize))
            return {StoreFailure::Kind::NotAStore, QStringLiteral("foreign file header")};
    }
    if ((status.st_mode & 0077) != 0 && status.st_uid == ::geteuid())
        ::chmod(name.constData(), 0600);
    return {};
}

void SqliteEngine::configure(QSqlDatabase& database) const
{
    database.setDatabaseName(m_path);
    database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(m_busyTimeoutMs));
}

QStringList SqliteEngine::sessionSetup() const
{
    return {QStringLiteral("PRAGMA journal_mode = DELETE"),
            QStringLiteral("PRAGMA synchronous = FULL"), QStringLiteral("PRAGMA foreign_keys = ON"),
            // Deleted secrets do not linger in free pages.
            QStringLiteral("PRAGMA secure_delete = ON")};
}

QString SqliteEngine::countTablesSql() const
{
    return QStringLiteral("SELECT COUNT(*) FROM sqlite_master");
}

QString SqliteEngine::beginWriteSql() const
{
    return QStringLiteral("BEGIN IMMEDIATE");
}

QString SqliteEngine::changeMarkerSql() const
{
    return QStringLiteral("PRAGMA data_version");
}

QString SqliteEngine::checkSql(bool thorough) const
{
    return thorough ? QStringLiteral("PRAGMA integrity_check(1)")
                    : QStringLiteral("PRAGMA quick_check(1)");
}

QString SqliteEngine::migrationSuffix() const
{
    return QStringLiteral(".sqlite");
}

StoreFailure::Kind SqliteEngine::classify(const QSqlError& error) const
{
    using Kind = StoreFailure::Kind;
    // The low byte of an extended result code is the primary one (sqlite3.h).
    switch (error.nativeErrorCode().toInt() & 0xff) {
    case 5: // SQLITE_BUSY
    case 6: // SQLITE_LOCKED
        return Kind::Busy;
    case 7: // SQLITE_NOMEM
        return Kind::OutOfMemory;
    case 8: // SQLITE_READONLY
        return Kind::ReadOnly;
    case 10: // SQLITE_IOERR
    case 14: // SQLITE_CANTOPEN
        return Kind::Io;
    case 11: // SQLITE_CORRUPT
    case 26: // SQLITE_NOTADB
        return Kind::Damaged;
    case 13: // SQLITE_FULL
        return Kind::Full;
    case 19: // SQLITE_CONSTRAINT
        return Kind::Constraint;
    default:
        return Kind::Other;
    }
}

void SqliteEngine::rememberIdentity()
{
    struct stat status = {};
    if (::stat(QFile::encodeName(m_path).constData(), &status) == 0) {
        m_device = status.st_dev;
        m_inode = status.st_ino;
    }
}

bool SqliteEngine::isSameStore() const
{
    struct stat status = {};
    return ::stat(QFile::encodeName(m_path).constData(), &status) == 0 &&
           status.st_dev == m_device && status.st_ino == m_inode;
}

} // namespace backend
