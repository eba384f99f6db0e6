#pragma once

#include "backend/sealedfile/SealProfile.h"
#include "backend/sealedfile/SealedFileError.h"
#include "backend/sealedfile/SecretBytes.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace backend {

/// Layout of a sealed file; numbers are big-endian:
///
///     0   8  magic
///     8   1  version, 1
///     9   1  profile (SealProfile)
///    10   4  length of the sealed payload, its authentication tag included
///    14  16  salt
///    30  24  nonce
///    54  32  key commitment
///    86   n  payload under XChaCha20-Poly1305, everything before it as associated data
///
/// Argon2id makes one master key of password and salt; the encryption key and the commitment are
/// derived from it apart, so that a file opens under one password only and a wrong password is
/// known before anything is decrypted. Opening a file never proves who made it: whoever knows the
/// password can make another.
namespace sealedfile {
/// Looks like no text in any encoding, and shows a transfer that rewrites line ends.
inline constexpr char magic[] = {'\x8a', 'T', 'A', 'A', '\r', '\n', '\x1a', '\n'};
inline constexpr quint8 version = 1;
inline constexpr qsizetype versionOffset = 8;
inline constexpr qsizetype profileOffset = 9;
inline constexpr qsizetype lengthOffset = 10;
inline constexpr qsizetype saltOffset = 14;
inline constexpr qsizetype nonceOffset = 30;
inline constexpr qsizetype commitmentOffset = 54;
inline constexpr qsizetype headerSize = 86;
/// Authentication tag at the end of the sealed payload.
inline constexpr qsizetype tagSize = 16;
/// A whole file, header included: far above any real file, far below what hurts the reader.
inline constexpr qsizetype maxFileSize = qsizetype{16} * 1024 * 1024;
inline constexpr qsizetype maxPayloadSize = maxFileSize - headerSize - tagSize;
} // namespace sealedfile

/// Seals `payload` under `password` into `*out`, a whole file ready to be written. The password is
/// taken in NFC and trimmed, here as in openBytes(), so that it opens however it was typed. Whoever
/// has other work to do meanwhile uses FileSealer.
///
/// Takes as long as the profile costs (a fraction of a second and 64 MiB for Standard). Errors:
/// InvalidInput (empty password, empty or too large payload), OutOfMemory; `*out` is then empty.
/// Any thread.
SealedFileError sealToBytes(QByteArrayView payload, const QString& password, SealProfile profile,
                            QByteArray* out);

/// Opens a whole sealed file into `*payload`. Magic, version, profile and lengths are checked
/// before the password is put to work. Errors: NotOurs, Unsupported (also the test profile unless
/// `allowTestProfile`), Damaged, WrongPassword (an empty one included), OutOfMemory; `*payload` is
/// then null. Any thread.
SealedFileError openBytes(QByteArrayView file, const QString& password, bool allowTestProfile,
                          SecretBytes* payload);

/// Reads the file at `path` into `*bytes`, at most one byte more than sealedfile::maxFileSize: too
/// much for openBytes(), which then refuses it. Only regular files are read, so that a pipe or a
/// device never makes the caller wait. Errors: Io (errno says why), OutOfMemory. Any thread.
SealedFileError readSealedFile(const QString& path, QByteArray* bytes);

/// What to tell the user about `error`, in Chinese; empty for None.
QString sealedFileErrorText(SealedFileError error);

} // namespace backend
