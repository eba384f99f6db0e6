#include "backend/sealedfile/SealedFile.h"

#include "backend/sealedfile/RegularFile.h"
#include "backend/sealedfile/Wipe.h"

#include <QtEndian>

#include <sodium.h>

#include <cerrno>
#include <cstring>
#include <new>
#include <optional>

namespace backend {

using namespace sealedfile;

namespace {

// Looks like no text in any encoding, and shows a transfer that rewrites line ends.
constexpr char magic[] = {'\x8a', 'T', 'A', 'A', '\r', '\n', '\x1a', '\n'};
constexpr quint8 fileVersion = 1;
constexpr char derivationContext[] = "taa-seal";
constexpr quint64 encryptionKeyId = 1;
constexpr quint64 commitmentId = 2;
constexpr std::size_t commitmentSize = 32;

static_assert(sizeof(magic) == versionOffset);
static_assert(saltOffset + crypto_pwhash_SALTBYTES == nonceOffset);
static_assert(nonceOffset + crypto_aead_xchacha20poly1305_ietf_NPUBBYTES == commitmentOffset);
static_assert(commitmentOffset + commitmentSize == headerSize);
static_assert(tagSize == crypto_aead_xchacha20poly1305_ietf_ABYTES);
static_assert(sizeof(derivationContext) - 1 == crypto_kdf_CONTEXTBYTES);

struct Cost
{
    unsigned long long passes;
    std::size_t memoryBytes;
};

std::optional<Cost> costOf(quint8 profile)
{
    switch (static_cast<SealProfile>(profile)) {
    case SealProfile::Standard:
        return Cost{3, std::size_t{64} * 1024 * 1024};
    case SealProfile::Test:
        return Cost{crypto_pwhash_OPSLIMIT_MIN, crypto_pwhash_MEMLIMIT_MIN};
    }
    return std::nullopt;
}

const unsigned char* bytesOf(QByteArrayView view)
{
    return reinterpret_cast<const unsigned char*>(view.data());
}

// One spelling for each password, however a keyboard composes it and whatever a paste adds.
SealedFileError passwordBytes(const QString& password, SecretBytes* out)
{
    QString composed = password.normalized(QString::NormalizationForm_C);
    QString trimmed = composed.trimmed();
    QByteArray utf8 = trimmed.toUtf8();
    SealedFileError error = SealedFileError::InvalidInput;
    if (!utf8.isEmpty()) {
        *out = SecretBytes::allocate(static_cast<std::size_t>(utf8.size()));
        error = out->isNull() ? SealedFileError::OutOfMemory : SealedFileError::None;
        if (error == SealedFileError::None)
            std::memcpy(out->data(), utf8.constData(), out->size());
    }
    wipe(utf8);
    wipe(trimmed);
    wipe(composed);
    return error;
}

struct Keys
{
    SecretBytes encryption;
    SecretBytes commitment;
};

SealedFileError deriveKeys(const QString& password, const unsigned char* salt, const Cost& cost,
                           Keys* keys)
{
    SecretBytes typed;
    const SealedFileError error = passwordBytes(password, &typed);
    if (error != SealedFileError::None)
        return error;
    SecretBytes master = SecretBytes::allocate(crypto_kdf_KEYBYTES);
    keys->encryption = SecretBytes::allocate(crypto_aead_xchacha20poly1305_ietf_KEYBYTES);
    keys->commitment = SecretBytes::allocate(commitmentSize);
    if (master.isNull() || keys->encryption.isNull() || keys->commitment.isNull())
        return SealedFileError::OutOfMemory;
    if (crypto_pwhash(master.data(), master.size(), reinterpret_cast<const char*>(typed.data()),
                      typed.size(), salt, cost.passes, cost.memoryBytes,
                      crypto_pwhash_ALG_ARGON2ID13) != 0)
        return SealedFileError::OutOfMemory;
    crypto_kdf_derive_from_key(keys->encryption.data(), keys->encryption.size(), encryptionKeyId,
                               derivationContext, master.data());
    crypto_kdf_derive_from_key(keys->commitment.data(), keys->commitment.size(), commitmentId,
                               derivationContext, master.data());
    return SealedFileError::None;
}

SealedFileError checkHeader(QByteArrayView file, bool allowTestProfile, Cost* cost)
{
    if (file.size() < versionOffset || std::memcmp(file.data(), magic, sizeof(magic)) != 0)
        return SealedFileError::NotOurs;
    if (file.size() < lengthOffset)
        return SealedFileError::Damaged;
    if (bytesOf(file)[versionOffset] != fileVersion)
        return SealedFileError::Unsupported;
    const quint8 profile = bytesOf(file)[profileOffset];
    const std::optional<Cost> known = costOf(profile);
    const bool forTestsOnly = static_cast<SealProfile>(profile) == SealProfile::Test;
    if (!known || (forTestsOnly && !allowTestProfile))
        return SealedFileError::Unsupported;
    if (file.size() <= headerSize + tagSize || file.size() > maxFileSize)
        return SealedFileError::Damaged;
    if (qFromBigEndian<quint32>(file.data() + lengthOffset) != file.size() - headerSize)
        return SealedFileError::Damaged;
    *cost = *known;
    return SealedFileError::None;
}

SealedFileError seal(QByteArrayView payload, const QString& password, SealProfile profile,
                     QByteArray* out)
{
    const std::optional<Cost> cost = costOf(static_cast<quint8>(profile));
    if (!cost || payload.isEmpty() || payload.size() > maxPayloadSize)
        return SealedFileError::InvalidInput;
    QByteArray file(headerSize + payload.size() + tagSize, Qt::Uninitialized);
    auto* bytes = reinterpret_cast<unsigned char*>(file.data());
    std::memcpy(bytes, magic, sizeof(magic));
    bytes[versionOffset] = fileVersion;
    bytes[profileOffset] = static_cast<quint8>(profile);
    qToBigEndian(static_cast<quint32>(file.size() - headerSize), bytes + lengthOffset);
    randombytes_buf(bytes + saltOffset, commitmentOffset - saltOffset);

    Keys keys;
    const SealedFileError error = deriveKeys(password, bytes + saltOffset, *cost, &keys);
    if (error != SealedFileError::None)
        return error;
    std::memcpy(bytes + commitmentOffset, keys.commitment.data(), commitmentSize);
    crypto_aead_xchacha20poly1305_ietf_encrypt(bytes + headerSize, nullptr, bytesOf(payload),
                                               static_cast<unsigned long long>(payload.size()),
                                               bytes, headerSize, nullptr, bytes + nonceOffset,
                                               keys.encryption.data());
    *out = std::move(file);
    return SealedFileError::None;
}

} // namespace

SealedFileError sealToBytes(QByteArrayView payload, const QString& password, SealProfile profile,
                            QByteArray* out)
{
    out->clear();
    if (sodium_init() < 0)
        return SealedFileError::OutOfMemory;
    try {
        return seal(payload, password, profile, out);
    } catch (const std::bad_alloc&) {
        return SealedFileError::OutOfMemory;
    }
}

SealedFileError openBytes(QByteArrayView file, const QString& password, bool allowTestProfile,
                          SecretBytes* payload)
{
    payload->clear();
    Cost cost = {};
    SealedFileError error = checkHeader(file, allowTestProfile, &cost);
    if (error != SealedFileError::None)
        return error;
    if (sodium_init() < 0)
        return SealedFileError::OutOfMemory;

    const unsigned char* bytes = bytesOf(file);
    Keys keys;
    try {
        error = deriveKeys(password, bytes + saltOffset, cost, &keys);
    } catch (const std::bad_alloc&) {
        error = SealedFileError::OutOfMemory;
    }
    // No file is sealed with an empty password.
    if (error == SealedFileError::InvalidInput)
        return SealedFileError::WrongPassword;
    if (error != SealedFileError::None)
        return error;
    if (sodium_memcmp(keys.commitment.data(), bytes + commitmentOffset, commitmentSize) != 0)
        return SealedFileError::WrongPassword;

    SecretBytes opened =
        SecretBytes::allocate(static_cast<std::size_t>(file.size() - headerSize - tagSize));
    if (opened.isNull())
        return SealedFileError::OutOfMemory;
    // The commitment has shown that the password is right: what fails now was altered.
    if (crypto_aead_xchacha20poly1305_ietf_decrypt(
            opened.data(), nullptr, nullptr, bytes + headerSize,
            static_cast<unsigned long long>(file.size() - headerSize), bytes, headerSize,
            bytes + nonceOffset, keys.encryption.data()) != 0)
        return SealedFileError::Damaged;
    *payload = std::move(opened);
    return SealedFileError::None;
}

SealedFileError readSealedFile(const QString& path, QByteArray* bytes)
{
    const int error = readRegularFile(path, maxFileSize + 1, bytes);
    errno = error;
    if (error == ENOMEM)
        return SealedFileError::OutOfMemory;
    return error == 0 ? SealedFileError::None : SealedFileError::Io;
}

QString sealedFileErrorText(SealedFileError error)
{
    switch (error) {
    case SealedFileError::None:
        return {};
    case SealedFileError::NotOurs:
        return QStringLiteral("不是授权文件");
    case SealedFileError::Unsupported:
        return QStringLiteral("授权文件的版本不受支持");
    case SealedFileError::Damaged:
        return QStringLiteral("授权文件已损坏");
    case SealedFileError::WrongPassword:
        return QStringLiteral("密码错误或授权文件被改动");
    case SealedFileError::OutOfMemory:
        return QStringLiteral("内存不足");
    case SealedFileError::Io:
        return QStringLiteral("文件读写失败");
    case SealedFileError::InvalidInput:
        return QStringLiteral("密码为空或授权内容无效");
    }
    return {};
}

} // namespace backend
