#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace backend {

/// Writes a file whole or not at all, in two phases: prepare() puts everything on the disk under
/// an unpredictable name beside the target, publish() gives it its name at once. Whoever commits
/// something that belongs to the file does so between the two.
///
/// The file is readable by its owner only (0600). A symbolic link at the target is never followed:
/// it counts as an existing file, and replacing replaces the link itself. What was not published
/// is removed by the destructor. File names are taken as QFile encodes them. Any thread, one at a
/// time.
class SafeFileWriter
{
public:
    enum class Replace { Allowed, Refused };
    enum class Published {
        Yes,
        /// There is a file of that name and replacing it was refused; it is untouched, and
        /// publish() may be called again.
        Exists,
        /// Failed; errorCode() says why, and the target is as it was.
        No,
    };

    SafeFileWriter() = default;
    SafeFileWriter(const SafeFileWriter&) = delete;
    SafeFileWriter& operator=(const SafeFileWriter&) = delete;
    ~SafeFileWriter();

    /// Writes `bytes` beside `path` and waits until the disk has them. False when that failed:
    /// errorCode() says why and nothing is left behind.
    bool prepare(const QString& path, QByteArrayView bytes);
    /// Gives the prepared file its name and waits until the disk has the folder.
    Published publish(Replace replace);
    /// Removes the prepared file.
    void discard();

    /// The errno of the last failure; 0 without one.
    int errorCode() const { return m_error; }
    /// Its text as the system words it.
    QString errorText() const;

private:
    bool fail(int error);
    static int writeTemporary(int descriptor, QByteArrayView bytes);
    int moveIntoPlace(Replace replace) const;

    QByteArray m_target;
    QByteArray m_temporary;
    int m_error = 0;
};

} // namespace backend
