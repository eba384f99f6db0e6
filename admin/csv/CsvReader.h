#pragma once

#include "admin/csv/CsvRecord.h"

#include <QByteArray>

namespace admin {

/// Reads comma-separated records (RFC 4180) in UTF-8, with or without a byte order mark; lines may
/// also end in a line feed alone, and empty lines are no records. A record that breaks the rules,
/// or has more or longer fields than any file of this program's, is handed out with its problem,
/// and reading goes on with the next line.
class CsvReader
{
public:
    explicit CsvReader(QByteArray bytes);

    /// False at the end.
    bool next(CsvRecord* record);
    /// How much of the file has been read, for a progress display.
    qsizetype position() const { return m_position; }
    qsizetype size() const { return m_bytes.size(); }

private:
    bool isAtEnd() const { return m_position >= m_bytes.size(); }
    /// The bytes of the line end at `position`; 0 when there is none.
    int lineEndLength(qsizetype position) const;
    bool takeLineEnd();
    QByteArray quotedField(QString* problem);
    QByteArray plainField(QString* problem);
    void skipLine();

    QByteArray m_bytes;
    qsizetype m_position = 0;
    int m_line = 1;
};

/// `fields` as one line of such a file, without the line end.
QString csvLine(const QStringList& fields);

} // namespace admin
