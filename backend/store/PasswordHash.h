#pragma once

#include <QString>

namespace backend {

/// Argon2id hashes of password digests (the digest is what the user signs in with; the store keeps
/// only its hash). Any thread.
class PasswordHash
{
public:
    /// `cheap` uses the library's smallest cost, for tests; otherwise 2 passes over 64 MiB, the
    /// library's setting for interactive use.
    explicit PasswordHash(bool cheap) : m_cheap(cheap) {}

    /// A salted hash of `digest` that carries its own cost; empty when memory ran out.
    QString hash(const QString& digest) const;
    /// Compares in constant time. False for a text that is no hash.
    bool verify(const QString& hash, const QString& digest) const;
    /// Takes as long as verify(), for names that nobody has.
    void spendTime(const QString& digest) const;

private:
    bool m_cheap;
};

/// Whether `digest` is the hexadecimal form of a SHA-1 checksum, in either case.
bool isPasswordDigest(const QString& digest);

/// The digest that stands for a typed password: of the trimmed text in the local 8-bit encoding,
/// lower case. A text that is a digest already stands for itself; empty for an empty password.
QString passwordDigest(const QString& password);

} // namespace backend
