#pragma once

#include <QString>
#include <QStringList>

namespace admin {

/// What the command line asks for. A value.
struct AdminOptions
{
    /// Where the store is; empty for the user's own.
    QString store;
    /// File with the password for the server; empty for none.
    QString passwordFile;
    /// Ask for the password for the server.
    bool asksPassword = false;
    /// File with the password to be set, "-" for standard input; empty to ask for it.
    QString newPasswordFile;
    /// Take all records of a file or none.
    bool isStrict = false;
    /// "create", "import", …
    QString command;
    QStringList arguments;
};

} // namespace admin
