#pragma once

#include "benchmarks/support/TableRows.h"

#include <QTableWidget>

namespace bench {

/// What most programs do: a QTableWidget with an item per cell and a widget per tick and button.
class PlainTable : public QTableWidget
{
public:
    explicit PlainTable(const TableRows& rows, QWidget* parent = nullptr);

    /// Removes all rows and makes them again.
    void reload();

private:
    void fillRow(int row);

    const TableRows& m_contents;
};

} // namespace bench
