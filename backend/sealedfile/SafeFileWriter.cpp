#include "backend/sealedfile/SafeFileWriter.h"

#include "utils/LogCenter.h"

#include <QFile>

#include <sodium.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace backend {

namespace {

constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;

QByteArray folderOf(const QByteArray& path)
{
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0)
        return QByteArrayLiteral(".");
    return slash == 0 ? QByteArrayLiteral("/") : path.left(slash);
}

// The name owes nothing to the target's, which may be as long as a name can be.
QByteArray temporaryName(const QByteArray& folder)
{
    unsigned char random[16];
    randombytes_buf(random, sizeof(random));
    const QByteArray bytes(reinterpret_cast<const char*>(random), sizeof(random));
    return QByteArray(folder + "/.partial-" + bytes.toHex());
}

int syncDescriptor(int descriptor)
{
    int result = 0;
    do {
        result = ::fsync(descriptor);
    } while (result != 0 && errno == EINTR);
    return result;
}

// Some file systems cannot do it; the file is whole and in its place all the same.
void syncFolder(const QByteArray& folder)
{
    const int descriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool synced = descriptor >= 0 && syncDescriptor(descriptor) == 0;
    const int error = synced ? 0 : errno;
    if (descriptor >= 0)
        ::close(descriptor);
    if (!synced) {
        utils::CLogCenter::warning(
            QStringLiteral("the folder %1 could not be flushed to the disk: %2")
                .arg(QFile::decodeName(folder), qt_error_string(error)));
    }
}

} // namespace

SafeFileWriter::~SafeFileWriter()
{
    discard();
}

bool SafeFileWriter::prepare(const QString& path, QByteArrayView bytes)
{
    discard();
    m_error = 0;
    // The system would take a zero character for the end of the name and write elsewhere.
    if (path.isEmpty() || path.endsWith(QLatin1Char('/')) || path.contains(QChar::Null) ||
        sodium_init() < 0)
        return fail(EINVAL);
    m_target = QFile::encodeName(path);
    const QByteArray temporary = temporaryName(folderOf(m_target));
    const int descriptor = ::open(temporary.constData(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, ownerOnly);
    if (descriptor < 0)
        return fail(errno);
    m_temporary = temporary;
    int error = writeTemporary(descriptor, bytes);
    // Network file systems report a failed write no sooner than here.
    if (::close(descriptor) != 0 && error == 0)
        error = errno;
    return error == 0 || fail(error);
}

int SafeFileWriter::writeTemporary(int descriptor, QByteArrayView bytes)
{
    // An unusual umask may have taken even the owner's rights.
    if (::fchmod(descriptor, ownerOnly) != 0)
        return errno;
    while (!bytes.isEmpty()) {
        const ssize_t count =
            ::write(descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count < 0 ? errno : EIO;
        bytes = bytes.sliced(count);
    }
    return syncDescriptor(descriptor) == 0 ? 0 : errno;
}

SafeFileWriter::Published SafeFileWriter::publish(Replace replace)
{
    m_error = 0;
    if (m_temporary.isEmpty()) {
        m_error = EINVAL;
        return Published::No;
    }
    m_error = moveIntoPlace(replace);
    if (m_error == EEXIST && replace == Replace::Refused)
        return Published::Exists;
    if (m_error != 0)
        return Published::No;
    m_temporary.clear();
    syncFolder(folderOf(m_target));
    return Published::Yes;
}

int SafeFileWriter::moveIntoPlace(Replace replace) const
{
    if (replace == Replace::Allowed)
        return ::rename(m_temporary.constData(), m_target.constData()) == 0 ? 0 : errno;
    if (::renameat2(AT_FDCWD, m_temporary.constData(), AT_FDCWD, m_target.constData(),
                    RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // File systems without that call refuse to give a name twice, which serves as well.
    if (::link(m_temporary.constData(), m_target.constData()) != 0)
        return errno;
    ::unlink(m_temporary.constData());
    return 0;
}

void SafeFileWriter::discard()
{
    if (!m_temporary.isEmpty())
        ::unlink(m_temporary.constData());
    m_temporary.clear();
}

QString SafeFileWriter::errorText() const
{
    return m_error == 0 ? QString() : qt_error_string(m_error);
}

bool SafeFileWriter::fail(int error)
{
    discard();
    m_error = error;
    return false;
}

} // namespace backend
