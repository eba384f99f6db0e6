#pragma once

#include <QPersistentModelIndex>
#include <QStyledItemDelegate>

namespace GW {

/// Draws the tree's nodes, one of them with a ring around it: the match that Enter would choose,
/// which is not the current node yet.
class CNodeMarkDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// An invalid index takes the ring away. The view is not told.
    void setMark(const QModelIndex& mark) { m_mark = mark; }
    QModelIndex mark() const { return m_mark; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    QPersistentModelIndex m_mark;
};

} // namespace GW
