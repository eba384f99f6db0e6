#pragma once

#include "admin/command/AdminOptions.h"

#include <QCommandLineParser>
#include <QStringList>

namespace admin {

/// Reads the command line. Needs a QCoreApplication.
class AdminOptionsParser
{
public:
    AdminOptionsParser();

    /// Reads `arguments`, the first of which is the program. False when one of them is wrong; then
    /// error() says which, in Chinese, and options() is not to be used.
    bool parse(const QStringList& arguments);

    const AdminOptions& options() const { return m_options; }
    QString error() const { return m_error; }
    bool helpWanted() const;
    QString helpText() const;

private:
    bool checkCommand();
    bool fail(const QString& error);

    QCommandLineParser m_parser;
    AdminOptions m_options;
    QString m_error;
};

} // namespace admin
