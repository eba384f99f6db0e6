#include "admin/console/PrivateFile.h"

#include "admin/console/PasswordText.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace admin {

namespace {

constexpr qint64 maxPasswordFileSize = 4096;

QString systemText(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

// Checked on the open file, so that no other can take its place in between.
QString problem(int descriptor, const QString& path, Privacy privacy, qint64 maxSize)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return QStringLiteral("无法读取文件 %1：%2").arg(path, systemText(errno));
    if (!S_ISREG(status.st_mode))
        return QStringLiteral("%1 不是普通文件").arg(path);
    if (status.st_size > maxSize)
        return QStringLiteral("文件 %1 过大").arg(path);
    if (privacy == Privacy::Any)
        return {};
    if (status.st_uid != ::geteuid())
        return QStringLiteral("文件 %1 含有密码，但属于其他用户").arg(path);
    if ((status.st_mode & 0077) != 0) {
        return QStringLiteral("文件 %1 含有密码，但其他用户也可以访问；请先执行 chmod 600")
            .arg(path);
    }
    return {};
}

std::optional<QString> firstLine(const QByteArray& bytes, const QString& place, QString* error)
{
    QByteArray line = bytes.split('\n').first();
    if (line.endsWith('\r'))
        line.chop(1);
    if (line.isEmpty()) {
        *error = QStringLiteral("%1的第一行没有密码").arg(place);
        return std::nullopt;
    }
    return passwordText(line, error);
}

} // namespace

std::optional<QByteArray> readFile(const QString& path, Privacy privacy, qint64 maxSize,
                                   QString* error)
{
    // Not blocking, because the name may be that of a pipe.
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        *error = QStringLiteral("无法读取文件 %1：%2").arg(path, systemText(errno));
        return std::nullopt;
    }
    *error = problem(descriptor, path, privacy, maxSize);
    if (!error->isEmpty()) {
        ::close(descriptor);
        return std::nullopt;
    }
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        *error = QStringLiteral("无法读取文件 %1").arg(path);
        return std::nullopt;
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        *error = QStringLiteral("无法读取文件 %1：%2").arg(path, file.errorString());
        return std::nullopt;
    }
    return bytes;
}

std::optional<QString> readPasswordFile(const QString& path, QString* error)
{
    const std::optional<QByteArray> bytes =
        readFile(path, Privacy::OwnerOnly, maxPasswordFileSize, error);
    if (!bytes)
        return std::nullopt;
    return firstLine(*bytes, QStringLiteral("文件 %1 ").arg(path), error);
}

std::optional<QString> readPasswordInput(QString* error)
{
    if (::isatty(STDIN_FILENO) == 1) {
        *error = QStringLiteral("标准输入是终端，密码会显示出来；请不用文件，由程序询问密码");
        return std::nullopt;
    }
    QByteArray bytes;
    char byte = 0;
    while (bytes.size() <= maxPasswordFileSize && byte != '\n') {
        const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0) {
            *error = QStringLiteral("无法读取标准输入：%1").arg(systemText(errno));
            return std::nullopt;
        }
        if (count == 0)
            break;
        bytes.append(byte);
    }
    if (bytes.size() > maxPasswordFileSize) {
        *error = QStringLiteral("标准输入的第一行过长");
        return std::nullopt;
    }
    return firstLine(bytes, QStringLiteral("标准输入"), error);
}

} // namespace admin
