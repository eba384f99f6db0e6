#include "kit/widgets/KeptSizeItem.h"

#include <QStyle>
#include <QWidget>

#include <algorithm>

namespace KZ {

CKeptSizeItem::CKeptSizeItem(QWidget* widget, Qt::Orientation along, bool fillsAcross,
                             const QSize& kept)
    : QWidgetItem(widget), m_along(along), m_fillsAcross(fillsAcross), m_kept(kept)
{
}

QSize CKeptSizeItem::sizeHint() const
{
    if (isEmpty())
        return {0, 0};
    QWidget* const inner = const_cast<CKeptSizeItem*>(this)->widget();
    const QSize wanted = m_kept.isValid() ? m_kept : inner->sizeHint();
    return wanted.expandedTo(inner->minimumSize()).boundedTo(inner->maximumSize());
}

QSize CKeptSizeItem::minimumSize() const
{
    if (isEmpty())
        return {0, 0};
    QWidget* const inner = const_cast<CKeptSizeItem*>(this)->widget();
    const QSize smallest = inner->minimumSizeHint().expandedTo(inner->minimumSize());
    QSize size = sizeHint();
    const QSizePolicy policy = inner->sizePolicy();
    const QSizePolicy::Policy along =
        m_along == Qt::Horizontal ? policy.horizontalPolicy() : policy.verticalPolicy();
    if (!m_kept.isValid() && (along & QSizePolicy::ShrinkFlag)) {
        if (m_along == Qt::Horizontal)
            size.setWidth(std::min(size.width(), std::max(0, smallest.width())));
        else
            size.setHeight(std::min(size.height(), std::max(0, smallest.height())));
    }
    if (m_fillsAcross) {
        if (m_along == Qt::Horizontal)
            size.setHeight(std::min(size.height(), std::max(0, smallest.height())));
        else
            size.setWidth(std::min(size.width(), std::max(0, smallest.width())));
    }
    return size;
}

QSize CKeptSizeItem::maximumSize() const
{
    if (isEmpty())
        return {0, 0};
    QSize size = sizeHint();
    // Across the list the item takes the whole breadth, to place the widget inside it.
    if (m_along == Qt::Horizontal)
        size.setHeight(QWIDGETSIZE_MAX);
    else
        size.setWidth(QWIDGETSIZE_MAX);
    return size;
}

Qt::Orientations CKeptSizeItem::expandingDirections() const
{
    return {};
}

bool CKeptSizeItem::hasHeightForWidth() const
{
    return false;
}

void CKeptSizeItem::setGeometry(const QRect& rect)
{
    if (isEmpty())
        return;
    QSize size = sizeHint().boundedTo(rect.size());
    if (m_fillsAcross) {
        if (m_along == Qt::Horizontal)
            size.setHeight(rect.height());
        else
            size.setWidth(rect.width());
    }
    const Qt::Alignment place =
        m_along == Qt::Horizontal ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignLeft | Qt::AlignTop;
    widget()->setGeometry(QStyle::alignedRect(widget()->layoutDirection(), place, size, rect));
}

} // namespace KZ
