#pragma once

#include <QFont>
#include <QString>
#include <QStringList>
#include <QVector>

namespace KZ {
class COddEvenRowTable;
}

namespace bench {

/// The finished contents of a table: what another table needs to show the same.
struct TableRows
{
    struct Row
    {
        QVector<QString> texts;
        bool hasTick = false;
        bool ticked = false;
        bool tickEnabled = false;
        bool hasButton = false;
    };

    /// The rows as a program would have made them anew: of each text one copy, which all rows that
    /// show it share, and which nothing else shares.
    QVector<Row> madeAnew() const;

    QStringList headers;
    QVector<Row> rows;
    QFont font;
    QVector<int> columnWidths;
    int rowHeight = 0;
    int tickColumn = -1;
    int stateColumn = -1;
    int buttonColumn = -1;
    QString buttonText;
};

/// Where a table has what.
struct TableShape
{
    int tickColumn;
    int stateColumn;
    int buttonColumn;
    /// State of the rows that have a button.
    QString buttonState;
    QString buttonText;
};

/// Reads the contents of one of the dialog's tables back.
TableRows readTable(KZ::COddEvenRowTable* table, const TableShape& shape);

} // namespace bench
