#include "backend/sealedfile/FileKey.h"

#include "backend/sealedfile/Wipe.h"

#include <sodium.h>

#include <cstring>
#include <optional>

namespace backend {

namespace {

constexpr char derivationContext[] = "taa-seal";
constexpr quint64 encryptionKeyId = 1;
constexpr quint64 commitmentId = 2;

static_assert(FileKey::saltSize == crypto_pwhash_SALTBYTES);
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

} // namespace

bool FileKey::isKnown(quint8 profile)
{
    return costOf(profile).has_value();
}

SealedFileError FileKey::spell(const QString& password, SecretBytes* spelled)
{
    QString composed = password.normalized(QString::NormalizationForm_C);
    QString trimmed = composed.trimmed();
    QByteArray utf8 = trimmed.toUtf8();
    SealedFileError error = SealedFileError::InvalidInput;
    if (!utf8.isEmpty()) {
        *spelled = SecretBytes::allocate(static_cast<std::size_t>(utf8.size()));
        error = spelled->isNull() ? SealedFileError::OutOfMemory : SealedFileError::None;
        if (error == SealedFileError::None)
            std::memcpy(spelled->data(), utf8.constData(), spelled->size());
    }
    wipe(utf8);
    wipe(trimmed);
    wipe(composed);
    return error;
}

SealedFileError FileKey::derive(const SecretBytes& spelled, const unsigned char* salt,
                                quint8 profile)
{
    const std::optional<Cost> cost = costOf(profile);
    if (!cost)
        return SealedFileError::Unsupported;
    SecretBytes master = SecretBytes::allocate(crypto_kdf_KEYBYTES);
    SecretBytes encryption = SecretBytes::allocate(crypto_aead_xchacha20poly1305_ietf_KEYBYTES);
    SecretBytes commitment = SecretBytes::allocate(commitmentSize);
    if (master.isNull() || encryption.isNull() || commitment.isNull())
        return SealedFileError::OutOfMemory;
    if (crypto_pwhash(master.data(), master.size(), reinterpret_cast<const char*>(spelled.data()),
                      spelled.size(), salt, cost->passes, cost->memoryBytes,
                      crypto_pwhash_ALG_ARGON2ID13) != 0)
        return SealedFileError::OutOfMemory;
    crypto_kdf_derive_from_key(encryption.data(), encryption.size(), encryptionKeyId,
                               derivationContext, master.data());
    crypto_kdf_derive_from_key(commitment.data(), commitment.size(), commitmentId,
                               derivationContext, master.data());
    m_encryption = std::move(encryption);
    m_commitment = std::move(commitment);
    return SealedFileError::None;
}

} // namespace backend
