#include "backend/sealedfile/RegularFile.h"

#include <QFile>
#include <QScopeGuard>

#include <cerrno>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace backend {

namespace {

int readAll(int descriptor, qsizetype maxBytes, QByteArray* bytes)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return errno;
    if (!S_ISREG(status.st_mode))
        return EINVAL;
    // The file may grow or shrink meanwhile: its size only says how much to expect.
    bytes->resize(qMin<qint64>(status.st_size, maxBytes));
    qsizetype filled = 0;
    while (filled < bytes->size()) {
        const ssize_t count =
            ::read(descriptor, bytes->data() + filled, static_cast<size_t>(bytes->size() - filled));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errno;
        if (count == 0)
            break;
        filled += count;
    }
    bytes->truncate(filled);
    return 0;
}

} // namespace

int readRegularFile(const QString& path, qsizetype maxBytes, QByteArray* bytes)
{
    bytes->clear();
    if (path.isEmpty() || path.contains(QChar::Null))
        return EINVAL;
    const QByteArray name = QFile::encodeName(path);
    const int descriptor = ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return errno;
    const auto closer = qScopeGuard([descriptor] { ::close(descriptor); });
    int error = 0;
    try {
        error = readAll(descriptor, maxBytes, bytes);
    } catch (const std::bad_alloc&) {
        error = ENOMEM;
    }
    if (error != 0)
        bytes->clear();
    return error;
}

} // namespace backend
