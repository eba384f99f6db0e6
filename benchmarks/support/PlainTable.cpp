#include "benchmarks/support/PlainTable.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QPushButton>

namespace bench {

PlainTable::PlainTable(const TableRows& rows, QWidget* parent)
    : QTableWidget(parent), m_contents(rows)
{
    setColumnCount(static_cast<int>(rows.headers.size()));
    setHorizontalHeaderLabels(rows.headers);
    setFont(rows.font);
    setShowGrid(false);
    setWordWrap(false);
    setVerticalScrollMode(ScrollPerPixel);
    setAlternatingRowColors(true);
    setSelectionBehavior(SelectRows);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(rows.rowHeight);
    for (int column = 0; column < rows.columnWidths.size(); ++column)
        setColumnWidth(column, rows.columnWidths.at(column));
}

void PlainTable::reload()
{
    setUpdatesEnabled(false);
    setRowCount(0);
    setRowCount(static_cast<int>(m_contents.rows.size()));
    for (int row = 0; row < m_contents.rows.size(); ++row)
        fillRow(row);
    setUpdatesEnabled(true);
}

void PlainTable::fillRow(int row)
{
    const TableRows::Row& contents = m_contents.rows.at(row);
    for (int column = 0; column < contents.texts.size(); ++column)
        setItem(row, column, new QTableWidgetItem(contents.texts.at(column)));
    if (contents.hasTick) {
        auto* tick = new QCheckBox;
        tick->setChecked(contents.ticked);
        tick->setEnabled(contents.tickEnabled);
        setCellWidget(row, m_contents.tickColumn, tick);
    }
    if (contents.hasButton)
        setCellWidget(row, m_contents.buttonColumn, new QPushButton(m_contents.buttonText));
}

} // namespace bench
