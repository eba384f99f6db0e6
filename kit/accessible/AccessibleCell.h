#pragma once

#include "kit/accessible/AccessibleTablePart.h"

namespace KZ {

class CAccessibleCellControl;

/// A cell of a table, known by its row's identifier and not by its place, so that it never comes to
/// stand for another row. Its check box or button is its child, whether there is a widget for that
/// or not.
class CAccessibleCell : public CAccessibleTablePart,
                        public QAccessibleTableCellInterface,
                        public QAccessibleActionInterface
{
public:
    CAccessibleCell(CTableView* view, int row, int column);
    ~CAccessibleCell() override;

    bool isValid() const override;
    QAccessibleInterface* child(int index) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text kind, const QString& text) override;
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::Cell; }
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    bool isSelected() const override;
    QList<QAccessibleInterface*> columnHeaderCells() const override;
    QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
    int columnIndex() const override { return m_column; }
    int rowIndex() const override;
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface* table() const override { return parent(); }

    QStringList actionNames() const override;
    void doAction(const QString& action) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QModelIndex index() const;

    const int m_row;
    const int m_column;
    mutable QAccessible::Id m_control = 0;
};

} // namespace KZ
