#pragma once

#include <QString>
#include <QStringList>

namespace admin {

/// One record of a CSV file. A value.
struct CsvRecord
{
    /// Line of the file on which the record begins, from 1.
    int line = 0;
    QStringList fields;
    /// Why the record cannot be read, in Chinese; its fields are then not to be used.
    QString problem;
};

} // namespace admin
