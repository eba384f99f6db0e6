#pragma once

#include <QString>

namespace backend {

/// Where a store is: a file or a database on a server. A value.
struct StoreLocation
{
    /// "sqlite" for the embedded store, "postgresql" for one on a server.
    QString engine;
    /// Absolute path of the embedded store's file.
    QString path;

    /// Host name, address or folder of the server's socket; empty for this machine's own socket.
    QString host;
    int port = 5432;
    QString database;
    /// The longest user or database name on a server, in bytes of UTF-8.
    static constexpr qsizetype maxServerNameLength = 63;
    /// Who connects, unless somebody signs in under another name.
    QString user;
    /// How far the server has to prove itself, in libpq's words; empty for standardSslMode().
    QString sslMode;
    /// File of the certificates that may have signed the server's; empty for libpq's own.
    QString sslRootCertificate;

    bool isServer() const;
    bool isValid() const { return isServer() ? !database.isEmpty() : !path.isEmpty(); }
    /// What to call the store in front of its users.
    QString displayName() const;
    /// "verify-full", or "prefer" for a server on this machine.
    QString standardSslMode() const;

    /// Reads a path, "sqlite:" followed by one, or
    /// postgresql://[user@]host[:port]/database[?sslmode=…&sslrootcert=…]. Invalid for anything
    /// else, with the reason in Chinese in `error` (may be null).
    static StoreLocation parse(const QString& text, QString* error = nullptr);

    /// The store of the user who runs the program: "authsetting.db" in his data folder.
    static StoreLocation standard();
};

} // namespace backend
