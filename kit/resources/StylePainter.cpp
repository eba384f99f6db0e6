#include "kit/resources/StylePainter.h"

#include "kit/resources/UiResource.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>

#include <algorithm>

namespace KZ {

namespace {

int radius(const QRect& rect)
{
    const int wanted = CUiResource::getSize(QStringLiteral("gw_siz_kit_corner_radius"));
    return std::min({wanted, rect.width() / 2, rect.height() / 2});
}

void mark(QPainter* painter, const QStyleOption& option, const QRect& rect, const QString& sizeKey)
{
    const QRect bar(rect.left(), rect.top(), CUiResource::getSize(sizeKey), rect.height());
    CStylePainter::fill(painter, QStyle::visualRect(option.direction, rect, bar),
                        option.state & QStyle::State_Enabled ? QStringLiteral("clr_accent_text")
                                                             : QStringLiteral("clr_icon_disabled"));
}

} // namespace

void CStylePainter::panel(QPainter* painter, const QRect& rect, const QString& fillKey,
                          const QString& borderKey)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(fillKey.isEmpty() ? QBrush(Qt::NoBrush)
                                        : QBrush(CUiResource::getColor(fillKey)));
    const qreal corner = radius(rect);
    if (borderKey.isEmpty()) {
        painter->setPen(Qt::NoPen);
        painter->drawRoundedRect(rect, corner, corner);
    } else {
        painter->setPen(QPen(CUiResource::getColor(borderKey), 1));
        painter->drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
    }
    painter->restore();
}

void CStylePainter::focusRing(QPainter* painter, const QRect& rect)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const qreal width = CUiResource::getSize(QStringLiteral("gw_siz_kit_focus_ring"));
    painter->setPen(QPen(CUiResource::getColor(QStringLiteral("clr_focus")), width));
    painter->setBrush(Qt::NoBrush);
    const qreal inset = width / 2;
    const qreal corner = radius(rect);
    painter->drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset), corner, corner);
    painter->restore();
}

void CStylePainter::editorPanel(QPainter* painter, const QStyleOption& option, const QRect& rect)
{
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool writable = enabled && !(option.state & QStyle::State_ReadOnly);
    QString borderKey = QStringLiteral("clr_border_control");
    if (!enabled)
        borderKey = QStringLiteral("clr_border_disabled");
    else if (writable && (option.state & QStyle::State_MouseOver))
        borderKey = QStringLiteral("clr_border_hover");
    panel(painter, rect,
          writable ? QStringLiteral("clr_panel") : QStringLiteral("clr_panel_disabled"), borderKey);
    if (enabled && (option.state & QStyle::State_HasFocus))
        focusRing(painter, rect);
}

void CStylePainter::checkBox(QPainter* painter, const QStyleOption& option, const QRect& rect)
{
    const int side = std::min({CUiResource::getSize(QStringLiteral("gw_siz_kit_check_box")),
                               rect.width(), rect.height()});
    const QRect box = QStyle::alignedRect(option.direction, Qt::AlignCenter, {side, side}, rect);
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool marked = option.state & (QStyle::State_On | QStyle::State_NoChange);
    const bool hovered = enabled && (option.state & QStyle::State_MouseOver);
    const bool pressed = enabled && (option.state & QStyle::State_Sunken);
    if (marked) {
        QString fillKey = QStringLiteral("clr_accent");
        if (!enabled)
            fillKey = QStringLiteral("clr_check_locked");
        else if (pressed)
            fillKey = QStringLiteral("clr_accent_pressed");
        else if (hovered)
            fillKey = QStringLiteral("clr_accent_hover");
        // The fill alone is too near to the ground of a selected row.
        panel(painter, box, fillKey, enabled ? QStringLiteral("clr_accent_text") : QString());
        const bool partly = option.state & QStyle::State_NoChange;
        CUiResource::getIcon(partly ? QStringLiteral("gw_img_kit_minus")
                                    : QStringLiteral("gw_img_kit_check"))
            .paint(painter, box);
        return;
    }
    QString borderKey = QStringLiteral("clr_border_control");
    QString fillKey = QStringLiteral("clr_panel");
    if (!enabled) {
        borderKey = QStringLiteral("clr_border_disabled");
        fillKey = QStringLiteral("clr_panel_disabled");
    } else if (pressed) {
        fillKey = QStringLiteral("clr_button_pressed");
    } else if (hovered) {
        borderKey = QStringLiteral("clr_accent_text");
    }
    panel(painter, box, fillKey, borderKey);
}

void CStylePainter::icon(QPainter* painter, const QRect& rect, const QString& iconKey,
                         const QString& colorKey, bool enabled)
{
    const int side = CUiResource::getSize(QStringLiteral("gw_siz_kit_icon"));
    const QRect place = QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, {side, side}, rect);
    CUiResource::getIcon(iconKey, colorKey)
        .paint(painter, place, Qt::AlignCenter, enabled ? QIcon::Normal : QIcon::Disabled);
}

void CStylePainter::itemGround(QPainter* painter, const QStyleOption& option, const QRect& rect)
{
    const bool enabled = option.state & QStyle::State_Enabled;
    if (option.state & QStyle::State_Selected)
        fill(painter, rect,
             enabled ? QStringLiteral("clr_selection") : QStringLiteral("clr_hover"));
    else if (enabled && (option.state & QStyle::State_MouseOver))
        fill(painter, rect, QStringLiteral("clr_hover"));
}

void CStylePainter::rowMark(QPainter* painter, const QStyleOption& option, const QRect& rect)
{
    mark(painter, option, rect, QStringLiteral("gw_siz_kit_tree_mark"));
}

void CStylePainter::entryMark(QPainter* painter, const QStyleOption& option, const QRect& rect)
{
    mark(painter, option, rect, QStringLiteral("gw_siz_kit_entry_mark"));
}

void CStylePainter::fill(QPainter* painter, const QRect& rect, const QString& colorKey)
{
    painter->fillRect(rect, CUiResource::getColor(colorKey));
}

} // namespace KZ
