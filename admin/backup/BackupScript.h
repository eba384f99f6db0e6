#pragma once

#include <QString>
#include <QStringList>

namespace admin {

/// The frame of a server backup: a first line that tells what the file is, the statements that make
/// the logins, the dump of the database, and a last line with the checksum of all before it.
class BackupScript
{
public:
    /// Writes the beginning into the empty file `path`. Why it failed, in Chinese, or empty.
    static QString begin(const QString& path, const QStringList& roleStatements);
    /// Adds the last line.
    static QString seal(const QString& path);
    /// Why `path` is no whole backup, in Chinese, or empty; then `logins` has the logins that it
    /// makes.
    static QString check(const QString& path, QStringList* logins);
};

} // namespace admin
