#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QTemporaryDir>
#include <QTimeZone>
#include <QVector>

/// Zone data of a test's own, so that nothing depends on the machine's, which differ by release.
class ZoneFile
{
public:
    struct Offset
    {
        int fromUtc;
        /// What the data call daylight time; data of one zone differ in it.
        bool isDaylight;
        /// Three letters.
        const char* name;
    };
    struct Change
    {
        QDateTime at;
        /// Index of the offset from then on.
        int offset;
    };

    /// The first offset holds before the first change; `rule` says in the words of POSIX what comes
    /// after the last change, empty for nothing new.
    ZoneFile(const QVector<Offset>& offsets, const QVector<Change>& changes,
             const QByteArray& rule = {});

    /// The zone as Qt reads it from the file; not valid when it cannot.
    QTimeZone zone() const;

private:
    QTemporaryDir m_directory;
};
