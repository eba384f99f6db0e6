#pragma once

#include "kit/accessible/AccessibleTablePart.h"

namespace KZ {

/// The header of a column of a table, or one of those that the table does not show: of a row, or
/// the corner between both, which Qt's numbering of a table's children provides for.
class CAccessibleTableHeader : public CAccessibleTablePart
{
public:
    /// `section` is the column or view row; -1 with Qt::Vertical is the corner.
    CAccessibleTableHeader(CTableView* view, Qt::Orientation orientation, int section);

    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;

private:
    QRect inHeader() const;

    const Qt::Orientation m_orientation;
    const int m_section;
};

} // namespace KZ
