#include "benchmarks/support/TableRows.h"

#include "kit/table/OddEvenRowTable.h"

#include <QHash>
#include <QHeaderView>
#include <QTableView>

namespace bench {

QVector<TableRows::Row> TableRows::madeAnew() const
{
    QHash<QString, QString> copies;
    QVector<Row> made = rows;
    for (Row& row : made) {
        for (QString& text : row.texts) {
            QString& copy = copies[text];
            if (copy.isNull() && !text.isEmpty())
                copy = QString(text.constData(), text.size());
            text = copy;
        }
    }
    return made;
}

TableRows readTable(KZ::COddEvenRowTable* table, const TableShape& shape)
{
    const int tickColumn = shape.tickColumn;
    TableRows result;
    result.tickColumn = tickColumn;
    result.stateColumn = shape.stateColumn;
    result.buttonColumn = shape.buttonColumn;
    result.buttonText = shape.buttonText;
    result.font = table->view()->font();
    result.rowHeight = table->view()->verticalHeader()->defaultSectionSize();
    for (int column = 0; column < table->columnCount(); ++column) {
        result.headers.append(table->headerText(column));
        result.columnWidths.append(table->columnWidth(column));
    }
    result.rows.reserve(table->rowCount());
    for (int row = 0; row < table->rowCount(); ++row) {
        TableRows::Row contents;
        for (int column = 0; column < table->columnCount(); ++column)
            contents.texts.append(table->itemText(row, column));
        if (tickColumn >= 0) {
            contents.hasTick = table->hasItemCheckBox(row, tickColumn);
            contents.ticked = table->isItemChecked(row, tickColumn);
            contents.tickEnabled = table->isItemCheckEnabled(row, tickColumn);
        }
        contents.hasButton = table->itemText(row, shape.stateColumn) == shape.buttonState;
        result.rows.append(contents);
    }
    return result;
}

} // namespace bench
