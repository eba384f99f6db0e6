#pragma once

#include "kit/accessible/AccessibleTablePart.h"

namespace KZ {

class CCellControls;

/// The check box or button of a table's cell as assistive tools meet it: it tells what it does to
/// which row and can be pressed, whether its widget has been made or not.
class CAccessibleCellControl : public CAccessibleTablePart, public QAccessibleActionInterface
{
public:
    CAccessibleCellControl(CTableView* view, int row, int column);

    bool isValid() const override;
    QAccessibleInterface* parent() const override;
    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& action) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    CCellControls& controls() const;
    QModelIndex index() const;
    bool isTick() const;
    QString ownAction() const;

    const int m_row;
    const int m_column;
};

} // namespace KZ
