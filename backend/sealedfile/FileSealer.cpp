#include "backend/sealedfile/FileSealer.h"

#include "backend/sealedfile/SealedFile.h"

#include <QtEndian>

#include <sodium.h>

#include <cstring>
#include <memory>
#include <new>
#include <system_error>
#include <utility>

namespace backend {

using namespace sealedfile;

namespace {

template <class Work>
std::future<SealedFileError> start(Work work)
{
    // One of the two must survive a failed attempt to start a thread.
    auto task = std::make_shared<Work>(std::move(work));
    try {
        return std::async(std::launch::async, [task] { return (*task)(); });
    } catch (const std::system_error&) {
        return std::async(std::launch::deferred, [task] { return (*task)(); });
    }
}

} // namespace

FileSealer::FileSealer(const QString& password, SealProfile profile)
{
    try {
        begin(password, profile);
    } catch (const std::bad_alloc&) {
        m_error = SealedFileError::OutOfMemory;
    }
}

void FileSealer::begin(const QString& password, SealProfile profile)
{
    SecretBytes spelled;
    const auto profileNumber = static_cast<quint8>(profile);
    m_error = FileKey::isKnown(profileNumber) ? FileKey::spell(password, &spelled)
                                              : SealedFileError::InvalidInput;
    if (m_error == SealedFileError::None && sodium_init() < 0)
        m_error = SealedFileError::OutOfMemory;
    if (m_error != SealedFileError::None)
        return;
    m_head = QByteArray(commitmentOffset, Qt::Uninitialized);
    auto* head = reinterpret_cast<unsigned char*>(m_head.data());
    std::memcpy(head, magic, sizeof(magic));
    head[versionOffset] = version;
    head[profileOffset] = profileNumber;
    randombytes_buf(head + saltOffset, commitmentOffset - saltOffset);
    m_derivation = start([this, head, profileNumber, spelled = std::move(spelled)] {
        return m_key.derive(spelled, head + saltOffset, profileNumber);
    });
}

SealedFileError FileSealer::seal(QByteArrayView payload, QByteArray* out)
{
    out->clear();
    if (m_derivation.valid())
        m_error = m_derivation.get();
    const QByteArray head = std::exchange(m_head, {});
    if (m_error != SealedFileError::None)
        return m_error;
    if (head.isEmpty() || payload.isEmpty() || payload.size() > maxPayloadSize)
        return SealedFileError::InvalidInput;
    QByteArray file;
    try {
        file = QByteArray(headerSize + payload.size() + tagSize, Qt::Uninitialized);
    } catch (const std::bad_alloc&) {
        return SealedFileError::OutOfMemory;
    }
    auto* bytes = reinterpret_cast<unsigned char*>(file.data());
    std::memcpy(bytes, head.constData(), commitmentOffset);
    qToBigEndian(static_cast<quint32>(file.size() - headerSize), bytes + lengthOffset);
    std::memcpy(bytes + commitmentOffset, m_key.commitment(), FileKey::commitmentSize);
    crypto_aead_xchacha20poly1305_ietf_encrypt(
        bytes + headerSize, nullptr, reinterpret_cast<const unsigned char*>(payload.data()),
        static_cast<unsigned long long>(payload.size()), bytes, headerSize, nullptr,
        bytes + nonceOffset, m_key.encryption());
    *out = std::move(file);
    return SealedFileError::None;
}

} // namespace backend
