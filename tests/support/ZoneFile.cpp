#include "tests/support/ZoneFile.h"

#include <QDataStream>
#include <QDir>
#include <QFile>

namespace {

constexpr char fileName[] = "zone";

void writeHeader(QDataStream& out, qint32 changes, qint32 offsets, qint32 nameBytes)
{
    out.writeRawData("TZif2", 5);
    out.writeRawData(QByteArray(15, '\0').constData(), 15);
    out << qint32(0) << qint32(0) << qint32(0) << changes << offsets << nameBytes;
}

} // namespace

ZoneFile::ZoneFile(const QVector<Offset>& offsets, const QVector<Change>& changes,
                   const QByteArray& rule)
{
    QFile file(m_directory.filePath(QLatin1String(fileName)));
    if (!file.open(QIODevice::WriteOnly))
        return;
    QDataStream out(&file);
    // The old 32-bit block, which readers of the new one skip, with the one offset it must have.
    writeHeader(out, 0, 1, 4);
    out << qint32(offsets.first().fromUtc) << quint8(0) << quint8(0);
    out.writeRawData("LMT", 4);

    writeHeader(out, qint32(changes.size()), qint32(offsets.size()), qint32(4 * offsets.size()));
    for (const Change& change : changes)
        out << qint64(change.at.toSecsSinceEpoch());
    for (const Change& change : changes)
        out << quint8(change.offset);
    for (qsizetype i = 0; i < offsets.size(); ++i)
        out << qint32(offsets.at(i).fromUtc) << quint8(offsets.at(i).isDaylight) << quint8(4 * i);
    for (const Offset& offset : offsets)
        out.writeRawData(offset.name, 4);
    const QByteArray footer = '\n' + rule + '\n';
    out.writeRawData(footer.constData(), int(footer.size()));
}

QTimeZone ZoneFile::zone() const
{
    // Qt looks for zones below one directory of the system and leaves it by this way only.
    const QString path = QDir(QStringLiteral("/usr/share/zoneinfo"))
                             .relativeFilePath(m_directory.filePath(QLatin1String(fileName)));
    return QTimeZone(path.toUtf8());
}
