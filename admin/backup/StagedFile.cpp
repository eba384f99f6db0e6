#include "admin/backup/StagedFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace admin {

namespace {

int syncToDisk(const QString& path, int flags)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC);
    if (descriptor < 0)
        return errno;
    const int error = ::fsync(descriptor) == 0 ? 0 : errno;
    ::close(descriptor);
    return error;
}

} // namespace

StagedFile::StagedFile(const QString& target) : m_target(QFileInfo(target).absoluteFilePath()) {}

StagedFile::~StagedFile()
{
    if (!m_path.isEmpty())
        QFile::remove(m_path);
}

QString StagedFile::failure(int error) const
{
    return QStringLiteral("无法写入文件 %1：%2")
        .arg(m_target, QString::fromLocal8Bit(std::strerror(error)));
}

QString StagedFile::taken() const
{
    return QStringLiteral("文件 %1 已存在，不会覆盖").arg(m_target);
}

QString StagedFile::create()
{
    struct stat status = {};
    if (::lstat(QFile::encodeName(m_target).constData(), &status) == 0)
        return taken();
    const QString path = QFileInfo(m_target).absolutePath() + QStringLiteral("/.authsetting-") +
                         QUuid::createUuid().toString(QUuid::Id128);
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return failure(errno);
    ::close(descriptor);
    m_path = path;
    return {};
}

QString StagedFile::publish()
{
    int error = syncToDisk(m_path, O_RDONLY);
    if (error != 0)
        return failure(error);
    // Unlike renaming, linking never replaces anything.
    if (::link(QFile::encodeName(m_path).constData(), QFile::encodeName(m_target).constData()) != 0)
        return errno == EEXIST ? taken() : failure(errno);
    QFile::remove(m_path);
    m_path.clear();
    error = syncToDisk(QFileInfo(m_target).absolutePath(), O_RDONLY | O_DIRECTORY);
    return error == 0 ? QString() : failure(error);
}

} // namespace admin
