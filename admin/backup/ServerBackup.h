#pragma once

#include "backend/store/StoreOptions.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace admin {

/// Copies a store on a server, with the logins of its users and their password verifiers, to a file
/// and back, by the server's own programs pg_dump and psql. The file is a script for psql with a
/// checksum in its last line. Has to be a superuser.
class ServerBackup
{
public:
    explicit ServerBackup(backend::StoreOptions store);

    /// Writes `file`, whole or not at all, as of one moment; an existing one is left alone. Why it
    /// failed, in Chinese, or empty.
    QString save(const QString& file) const;
    /// Fills an empty database from `file` in one transaction. Refused when there is anything in
    /// the database, or one of the logins is there already. Why it failed, in Chinese, or empty.
    QString restore(const QString& file) const;

private:
    /// How the programs find the server; the password is not for the command line.
    QProcessEnvironment environment() const;
    QString write(const QString& path) const;
    QString dump(const QString& path, const QString& snapshot) const;
    QString requireEmptyTarget(const QStringList& logins) const;

    backend::StoreOptions m_store;
};

} // namespace admin
