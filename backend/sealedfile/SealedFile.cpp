#include "backend/sealedfile/SealedFile.h"

#include "backend/sealedfile/FileKey.h"
#include "backend/sealedfile/FileSealer.h"
#include "backend/sealedfile/RegularFile.h"

#include <QtEndian>

#include <sodium.h>

#include <cerrno>
#include <cstring>
#include <new>

namespace backend {

using namespace sealedfile;

namespace {

constexpr std::size_t commitmentSize = FileKey::commitmentSize;

static_assert(sizeof(magic) == versionOffset);
static_assert(saltOffset + FileKey::saltSize == nonceOffset);
static_assert(nonceOffset + crypto_aead_xchacha20poly1305_ietf_NPUBBYTES == commitmentOffset);
static_assert(commitmentOffset + commitmentSize == headerSize);
static_assert(tagSize == crypto_aead_xchacha20poly1305_ietf_ABYTES);

const unsigned char* bytesOf(QByteArrayView view)
{
    return reinterpret_cast<const unsigned char*>(view.data());
}

SealedFileError checkHeader(QByteArrayView file, bool allowTestProfile)
{
    if (file.size() < versionOffset || std::memcmp(file.data(), magic, sizeof(magic)) != 0)
        return SealedFileError::NotOurs;
    if (file.size() < lengthOffset)
        return SealedFileError::Damaged;
    if (bytesOf(file)[versionOffset] != version)
        return SealedFileError::Unsupported;
    const quint8 profile = bytesOf(file)[profileOffset];
    const bool forTestsOnly = static_cast<SealProfile>(profile) == SealProfile::Test;
    if (!FileKey::isKnown(profile) || (forTestsOnly && !allowTestProfile))
        return SealedFileError::Unsupported;
    if (file.size() <= headerSize + tagSize || file.size() > maxFileSize)
        return SealedFileError::Damaged;
    if (qFromBigEndian<quint32>(file.data() + lengthOffset) != file.size() - headerSize)
        return SealedFileError::Damaged;
    return SealedFileError::None;
}

} // namespace

SealedFileError sealToBytes(QByteArrayView payload, const QString& password, SealProfile profile,
                            QByteArray* out)
{
    out->clear();
    // Known before the key is derived.
    if (payload.isEmpty() || payload.size() > maxPayloadSize)
        return SealedFileError::InvalidInput;
    return FileSealer(password, profile).seal(payload, out);
}

SealedFileError openBytes(QByteArrayView file, const QString& password, bool allowTestProfile,
                          SecretBytes* payload)
{
    payload->clear();
    SealedFileError error = checkHeader(file, allowTestProfile);
    if (error != SealedFileError::None)
        return error;
    if (sodium_init() < 0)
        return SealedFileError::OutOfMemory;

    const unsigned char* bytes = bytesOf(file);
    SecretBytes spelled;
    FileKey key;
    try {
        error = FileKey::spell(password, &spelled);
    } catch (const std::bad_alloc&) {
        error = SealedFileError::OutOfMemory;
    }
    // No file is sealed with an empty password.
    if (error == SealedFileError::InvalidInput)
        return SealedFileError::WrongPassword;
    if (error == SealedFileError::None)
        error = key.derive(spelled, bytes + saltOffset, bytes[profileOffset]);
    if (error != SealedFileError::None)
        return error;
    if (sodium_memcmp(key.commitment(), bytes + commitmentOffset, commitmentSize) != 0)
        return SealedFileError::WrongPassword;

    SecretBytes opened =
        SecretBytes::allocate(static_cast<std::size_t>(file.size() - headerSize - tagSize));
    if (opened.isNull())
        return SealedFileError::OutOfMemory;
    // The commitment has shown that the password is right: what fails now was altered.
    if (crypto_aead_xchacha20poly1305_ietf_decrypt(
            opened.data(), nullptr, nullptr, bytes + headerSize,
            static_cast<unsigned long long>(file.size() - headerSize), bytes, headerSize,
            bytes + nonceOffset, key.encryption()) != 0)
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
