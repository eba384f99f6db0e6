#include "backend/store/PasswordHash.h"

#include "utils/Digest.h"

#include <sodium.h>

#include <algorithm>

namespace backend {

namespace {

constexpr qsizetype digestLength = 40; // SHA-1: 20 bytes, two digits each

bool isHexDigit(QChar character)
{
    return (character >= u'0' && character <= u'9') || (character >= u'a' && character <= u'f') ||
           (character >= u'A' && character <= u'F');
}

} // namespace

QString PasswordHash::hash(const QString& digest) const
{
    if (sodium_init() < 0)
        return {};
    const QByteArray bytes = digest.toLower().toLatin1();
    char out[crypto_pwhash_STRBYTES];
    const int failed = crypto_pwhash_str_alg(
        out, bytes.constData(), static_cast<unsigned long long>(bytes.size()),
        m_cheap ? crypto_pwhash_OPSLIMIT_MIN : crypto_pwhash_OPSLIMIT_INTERACTIVE,
        m_cheap ? crypto_pwhash_MEMLIMIT_MIN : crypto_pwhash_MEMLIMIT_INTERACTIVE,
        crypto_pwhash_ALG_ARGON2ID13);
    return failed != 0 ? QString() : QString::fromLatin1(out);
}

bool PasswordHash::verify(const QString& hash, const QString& digest) const
{
    if (sodium_init() < 0)
        return false;
    const QByteArray stored = hash.toLatin1();
    const QByteArray bytes = digest.toLower().toLatin1();
    return crypto_pwhash_str_verify(stored.constData(), bytes.constData(),
                                    static_cast<unsigned long long>(bytes.size())) == 0;
}

void PasswordHash::spendTime(const QString& digest) const
{
    static_cast<void>(hash(digest));
}

bool isPasswordDigest(const QString& digest)
{
    return digest.size() == digestLength && std::all_of(digest.cbegin(), digest.cend(), isHexDigit);
}

QString passwordDigest(const QString& password)
{
    const QString trimmed = password.trimmed();
    if (trimmed.isEmpty())
        return {};
    if (isPasswordDigest(trimmed))
        return trimmed.toLower();
    return QString::fromLatin1(utils::hexlify(utils::sha1_checksum(trimmed.toLocal8Bit())));
}

} // namespace backend
