#pragma once

#include "host/options/HostOptions.h"

#include <QCommandLineParser>
#include <QStringList>

namespace host {

/// Reads the command line. Needs a QCoreApplication, because it takes its texts from there.
class HostOptionsParser
{
public:
    HostOptionsParser();

    /// Reads `arguments`, the first of which is the program. False when one of them is wrong; then
    /// error() says which, in Chinese, and options() is not to be used.
    bool parse(const QStringList& arguments);

    const HostOptions& options() const { return m_options; }
    QString error() const { return m_error; }
    /// Whether the user asked for the list of options.
    bool helpWanted() const;
    QString helpText() const;

private:
    bool fail(const QString& error);
    bool readPage();
    bool readInteger(QLatin1String option, int minimum, int* value);
    bool readTheme();
    bool readScale();
    bool readClock();
    bool readTour();

    QCommandLineParser m_parser;
    HostOptions m_options;
    QString m_error;
};

} // namespace host
