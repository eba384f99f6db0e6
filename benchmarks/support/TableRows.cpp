#include "benchmarks/support/TableRows.h"

#include "kit/table/OddEvenRowTable.h"

#include <QHeaderView>
#include <QTableView>

namespace bench {

TableRows readTable(KZ::COddEvenRowTable* table, const TableShape& shape)
{
    const int tickColumn = shape.tickColumn;
    TableRows result;
    result.tickColumn = tickColumn;
    result.stateColumn = shape.stateColumn;
    result.buttonColumn = shape.buttonColumn;
    result.buttonText = shape.buttonText;
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
