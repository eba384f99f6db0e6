#pragma once

#include "utils/UtilsExport.h"

#include <QString>

namespace utils {

/// The switchboard of the client's log files. All functions may be called from any thread.
class AUTHUTILS_EXPORT CLogCenter
{
public:
    /// Sends every logger's lines to the file at `path` (appended, UTF-8); an empty path or a file
    /// that cannot be opened leaves the lines on standard error. Returns whether the file is used.
    static bool configure(const QString& path);

    /// Whether lines of `level` go to the file; the higher the level, the more detailed the line.
    static bool fileLogEnabled(int level);

    /// Lets lines up to and including `level` through; negative lets none through. Initially 10.
    static void setFileLogLevel(int level);

    /// Whether the logger `name` has its debug level on.
    static bool debugEnabled(const char* name);

    /// Switches the debug level of the logger `name`; it is off at first.
    static void setDebugEnabled(const char* name, bool enabled);

    /// Writes one error line, for what an operator has to know, to the logger "MBErrFile".
    static void error(const QString& text);

    /// Writes one warning line to the logger "MBErrFile".
    static void warning(const QString& text);
};

} // namespace utils

/// Writes `text` as one debug line to the logger "MBDbgFile"; the line is dropped when
/// CLogCenter::fileLogEnabled(level) is false or that logger's debug level is off.
AUTHUTILS_EXPORT void mbDbgLogNew(int level, const QString& text);
