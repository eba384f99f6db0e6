#include "admin/csv/CsvReader.h"

#include <QStringDecoder>

#include <algorithm>
#include <utility>

namespace admin {

namespace {

// What keeps a hostile file from taking many times its size in memory.
constexpr qsizetype maxFieldBytes = 4096;
constexpr qsizetype maxFields = 100;

QString tooLongText()
{
    return QStringLiteral("字段过长，最多 %1 字节").arg(maxFieldBytes);
}

QString decoded(const QByteArray& bytes, QString* problem)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder(bytes);
    if (decoder.hasError())
        *problem = QStringLiteral("不是 UTF-8 编码");
    if (problem->isEmpty() && text.contains(QChar(0)))
        *problem = QStringLiteral("含有空字符");
    return text;
}

} // namespace

CsvReader::CsvReader(QByteArray bytes) : m_bytes(std::move(bytes))
{
    if (m_bytes.startsWith("\xef\xbb\xbf"))
        m_position = 3;
}

int CsvReader::lineEndLength(qsizetype position) const
{
    if (m_bytes.at(position) == '\n')
        return 1;
    const bool isPair = m_bytes.at(position) == '\r' && position + 1 < m_bytes.size() &&
                        m_bytes.at(position + 1) == '\n';
    return isPair ? 2 : 0;
}

bool CsvReader::takeLineEnd()
{
    const int length = lineEndLength(m_position);
    m_position += length;
    m_line += length > 0 ? 1 : 0;
    return length > 0;
}

bool CsvReader::next(CsvRecord* record)
{
    while (!isAtEnd() && takeLineEnd()) {
    }
    if (isAtEnd())
        return false;
    *record = CsvRecord();
    record->line = m_line;
    while (true) {
        const bool isQuoted = !isAtEnd() && m_bytes.at(m_position) == '"';
        const QByteArray field =
            isQuoted ? quotedField(&record->problem) : plainField(&record->problem);
        if (record->fields.size() == maxFields && record->problem.isEmpty())
            record->problem = QStringLiteral("字段过多");
        if (record->problem.isEmpty())
            record->fields.append(decoded(field, &record->problem));
        if (isAtEnd() || takeLineEnd())
            return true;
        if (m_bytes.at(m_position) != ',') {
            if (record->problem.isEmpty())
                record->problem = QStringLiteral("引号之后还有文字");
            skipLine();
            return true;
        }
        ++m_position;
    }
}

QByteArray CsvReader::quotedField(QString* problem)
{
    QByteArray field;
    ++m_position;
    while (!isAtEnd()) {
        const char byte = m_bytes.at(m_position++);
        if (byte == '"') {
            if (isAtEnd() || m_bytes.at(m_position) != '"')
                return field;
            ++m_position;
        }
        m_line += byte == '\n' ? 1 : 0;
        if (field.size() < maxFieldBytes)
            field.append(byte);
        else if (problem->isEmpty())
            *problem = tooLongText();
    }
    *problem = QStringLiteral("引号没有结束，文件的其余部分都在其中");
    return field;
}

QByteArray CsvReader::plainField(QString* problem)
{
    const qsizetype start = m_position;
    while (!isAtEnd()) {
        const char byte = m_bytes.at(m_position);
        if (byte == ',' || lineEndLength(m_position) > 0)
            break;
        if (byte == '"' && problem->isEmpty())
            *problem = QStringLiteral("没有加引号的字段中有引号");
        if (byte == '\r' && problem->isEmpty())
            *problem = QStringLiteral("没有加引号的字段中有回车符");
        ++m_position;
    }
    if (m_position - start > maxFieldBytes && problem->isEmpty())
        *problem = tooLongText();
    return m_bytes.mid(start, std::min(m_position - start, maxFieldBytes));
}

void CsvReader::skipLine()
{
    const qsizetype end = m_bytes.indexOf('\n', m_position);
    m_position = end < 0 ? m_bytes.size() : end + 1;
    m_line += end < 0 ? 0 : 1;
}

QString csvLine(const QStringList& fields)
{
    QStringList quoted;
    for (QString field : fields) {
        if (field.contains(QLatin1Char('"')) || field.contains(QLatin1Char(',')) ||
            field.contains(QLatin1Char('\n')) || field.contains(QLatin1Char('\r'))) {
            field.replace(QLatin1Char('"'), QStringLiteral("\"\""));
            field = QLatin1Char('"') + field + QLatin1Char('"');
        }
        quoted.append(field);
    }
    return quoted.join(QLatin1Char(','));
}

} // namespace admin
