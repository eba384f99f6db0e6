#pragma once

#include "admin/csv/CsvRecord.h"

#include <QHash>
#include <QString>
#include <QStringList>

namespace admin {

/// `text` for a message: nobody reads more than the beginning of a long one.
QString shortened(const QString& text);

/// Which column of a CSV file holds what, by the names in its first record.
class CsvHeader
{
public:
    /// Why `record` is no header with these columns, in Chinese; empty when it is one, in whatever
    /// order. Optional columns may be absent, others may not be there.
    QString read(const CsvRecord& record, const QStringList& required, const QStringList& optional);

    /// Why `record` does not fit the header, in Chinese; empty when it does.
    QString problem(const CsvRecord& record) const;
    /// The field of that column, without blanks around it; empty for an absent column.
    QString value(const CsvRecord& record, const QString& column) const;
    /// The same with its blanks.
    QString rawValue(const CsvRecord& record, const QString& column) const;

private:
    QHash<QString, qsizetype> m_columns;
};

} // namespace admin
