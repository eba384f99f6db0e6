#pragma once

#include "backend/sealedfile/SealProfile.h"
#include "backend/sealedfile/SealedFileError.h"
#include "backend/sealedfile/SecretBytes.h"

#include <QString>

#include <cstddef>

namespace backend {

/// What a password and the salt of one sealed file make: the key of its payload and the commitment
/// that shows the right password. Any thread, one at a time.
class FileKey
{
public:
    static constexpr std::size_t saltSize = 16;
    static constexpr std::size_t commitmentSize = 32;

    /// Whether files of this profile number can be made and opened.
    static bool isKnown(quint8 profile);
    /// The password as it goes into the key: composed (NFC), trimmed, UTF-8, so that it opens a
    /// file however it was typed. InvalidInput for an empty one; OutOfMemory.
    static SealedFileError spell(const QString& password, SecretBytes* spelled);

    /// Takes as long and as much memory as the known `profile` says; `salt` has `saltSize` bytes.
    /// OutOfMemory, Unsupported.
    SealedFileError derive(const SecretBytes& spelled, const unsigned char* salt, quint8 profile);

    const unsigned char* encryption() const { return m_encryption.data(); }
    const unsigned char* commitment() const { return m_commitment.data(); }

private:
    SecretBytes m_encryption;
    SecretBytes m_commitment;
};

} // namespace backend
