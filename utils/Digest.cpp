#include "utils/Digest.h"

#include <QCryptographicHash>

namespace utils {

QByteArray sha1_checksum(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1);
}

QByteArray hexlify(const QByteArray& bytes)
{
    return bytes.toHex();
}

} // namespace utils
