#pragma once

#include <QAccessibleWidget>
#include <QHash>

namespace KZ {

class CTableModel;
class CTableView;

/// The view of a COddEvenRowTable as assistive tools meet it. Headers and cells are made one by one
/// when a tool asks for them, so that a table of any length costs nothing until it is read; new
/// rows throw them away. Children are numbered as Qt's tables number them: corner and column
/// headers, then for each row its header and its cells.
class CAccessibleTable : public QAccessibleWidget, public QAccessibleTableInterface
{
public:
    explicit CAccessibleTable(CTableView* view);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QAccessibleInterface* caption() const override { return nullptr; }
    QAccessibleInterface* summary() const override { return nullptr; }
    QAccessibleInterface* cellAt(int row, int column) const override;
    int selectedCellCount() const override;
    QList<QAccessibleInterface*> selectedCells() const override;
    QString columnDescription(int column) const override;
    QString rowDescription(int) const override { return {}; }
    int selectedColumnCount() const override { return int(selectedColumns().size()); }
    int selectedRowCount() const override { return int(selectedRows().size()); }
    int columnCount() const override;
    int rowCount() const override;
    QList<int> selectedColumns() const override;
    QList<int> selectedRows() const override;
    bool isColumnSelected(int column) const override;
    bool isRowSelected(int row) const override;
    bool selectRow(int row) override;
    bool selectColumn(int) override { return false; }
    bool unselectRow(int row) override;
    bool unselectColumn(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent* event) override;

protected:
    ~CAccessibleTable() override;

private:
    CTableView* view() const;
    CTableModel& model() const;
    /// Children in one row, its header included.
    int stride() const { return columnCount() + 1; }
    QAccessibleInterface* make(int index) const;
    bool changeSelection(int row, bool selected);
    void forgetParts();

    /// Cells by row identifier and column, headers by their place.
    mutable QHash<quint64, QAccessible::Id> m_parts;
};

} // namespace KZ
