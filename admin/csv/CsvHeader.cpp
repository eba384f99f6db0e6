#include "admin/csv/CsvHeader.h"

namespace admin {

QString shortened(const QString& text)
{
    constexpr qsizetype longest = 40;
    return text.size() <= longest ? text : text.left(longest) + QStringLiteral("…");
}

QString CsvHeader::read(const CsvRecord& record, const QStringList& required,
                        const QStringList& optional)
{
    m_columns.clear();
    if (!record.problem.isEmpty())
        return QStringLiteral("标题行无法读取：%1").arg(record.problem);
    for (qsizetype i = 0; i < record.fields.size(); ++i) {
        const QString name = record.fields[i].trimmed().toLower();
        if (!required.contains(name) && !optional.contains(name)) {
            return QStringLiteral("标题行中有不认识的列“%1”，可用的列：%2")
                .arg(shortened(name), (required + optional).join(QStringLiteral("、")));
        }
        if (m_columns.contains(name))
            return QStringLiteral("标题行中的列“%1”重复").arg(name);
        m_columns.insert(name, i);
    }
    for (const QString& name : required) {
        if (!m_columns.contains(name))
            return QStringLiteral("标题行中缺少列“%1”").arg(name);
    }
    return {};
}

QString CsvHeader::problem(const CsvRecord& record) const
{
    if (!record.problem.isEmpty())
        return record.problem;
    if (record.fields.size() != m_columns.size()) {
        return QStringLiteral("有 %1 个字段，应为 %2 个")
            .arg(record.fields.size())
            .arg(m_columns.size());
    }
    return {};
}

QString CsvHeader::rawValue(const CsvRecord& record, const QString& column) const
{
    return record.fields.value(m_columns.value(column, -1));
}

QString CsvHeader::value(const CsvRecord& record, const QString& column) const
{
    return rawValue(record, column).trimmed();
}

} // namespace admin
