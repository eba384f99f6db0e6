#include "authsetting/shell/NodeMarkDelegate.h"

#include "kit/resources/UiResource.h"

#include <QPainter>

namespace GW {

void CNodeMarkDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    if (!m_mark.isValid() || index != m_mark)
        return;
    const int radius = KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_corner_radius"));
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const qreal width = KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_focus_ring"));
    painter->setPen(QPen(KZ::CUiResource::getColor(QStringLiteral("clr_focus")), width));
    painter->setBrush(Qt::NoBrush);
    const qreal inset = width / 2;
    painter->drawRoundedRect(QRectF(option.rect).adjusted(inset, inset, -inset, -inset), radius,
                             radius);
    painter->restore();
}

} // namespace GW
