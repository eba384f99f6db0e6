#include "kit/resources/ControlPainter.h"

#include "kit/resources/StylePainter.h"
#include "kit/resources/UiResource.h"

#include <QAbstractItemView>
#include <QPainter>
#include <QStyleOption>
#include <QToolButton>

namespace KZ {

namespace {

bool isHovered(const QStyleOption& option)
{
    return (option.state & QStyle::State_Enabled) && (option.state & QStyle::State_MouseOver);
}

void drawFocusRect(const QStyleOption& option, QPainter* painter, const QWidget* widget)
{
    if (!(option.state & QStyle::State_KeyboardFocusChange))
        return;
    if (!qobject_cast<const QAbstractItemView*>(widget)) {
        CStylePainter::focusRing(painter, option.rect);
        return;
    }
    // The list of a combo box shows its current entry by colour alone.
    if (widget->window()->windowType() == Qt::Popup)
        return;
    // A full ring in every cell would drown the table; one line tells the current cell.
    painter->save();
    painter->setPen(CUiResource::getColor(QStringLiteral("clr_focus")));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
    painter->restore();
}

void drawArrow(const QStyleOption& option, QPainter* painter, const QString& iconKey)
{
    CStylePainter::icon(painter, option.rect, iconKey, QString(),
                        option.state & QStyle::State_Enabled);
}

/// The base puts the arrow of a menu button into its lower corner; here it is level with the text.
void drawDownArrow(const QStyleOption& option, QPainter* painter, const QWidget* widget)
{
    QStyleOption arrow = option;
    const auto* const button = qobject_cast<const QToolButton*>(widget);
    if (button && button->menu()) {
        const int width = 2 * CUiResource::getSize(QStringLiteral("gw_siz_kit_icon"));
        const QRect end(button->width() - width, 0, width, button->height());
        arrow.rect = QStyle::visualRect(option.direction, button->rect(), end);
    }
    drawArrow(arrow, painter, QStringLiteral("gw_img_kit_chevron_down"));
}

} // namespace

bool CControlPainter::drawPrimitive(QStyle::PrimitiveElement element, const QStyleOption& option,
                                    QPainter* painter, const QWidget* widget)
{
    switch (element) {
    case QStyle::PE_PanelButtonCommand:
        drawButton(option, painter, false);
        return true;
    case QStyle::PE_PanelButtonTool:
        drawFlatButton(option, painter);
        return true;
    case QStyle::PE_FrameFocusRect:
        drawFocusRect(option, painter, widget);
        return true;
    case QStyle::PE_IndicatorCheckBox:
    case QStyle::PE_IndicatorItemViewItemCheck:
        CStylePainter::checkBox(painter, option, option.rect);
        return true;
    case QStyle::PE_PanelLineEdit: {
        const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
        if (frame && frame->lineWidth > 0)
            CStylePainter::editorPanel(painter, option, option.rect);
        return true;
    }
    case QStyle::PE_FrameLineEdit:
    case QStyle::PE_FrameButtonBevel:
    case QStyle::PE_FrameDefaultButton:
        return true;
    case QStyle::PE_IndicatorArrowDown:
        drawDownArrow(option, painter, widget);
        return true;
    case QStyle::PE_IndicatorArrowUp:
        drawArrow(option, painter, QStringLiteral("gw_img_kit_chevron_up"));
        return true;
    case QStyle::PE_IndicatorArrowLeft:
        drawArrow(option, painter, QStringLiteral("gw_img_kit_chevron_left"));
        return true;
    case QStyle::PE_IndicatorArrowRight:
        drawArrow(option, painter, QStringLiteral("gw_img_kit_chevron_right"));
        return true;
    default:
        return false;
    }
}

bool CControlPainter::drawControl(QStyle::ControlElement element, const QStyleOption& option,
                                  QPainter* painter, const QWidget*)
{
    if (element == QStyle::CE_PushButtonBevel) {
        drawButton(option, painter, false);
        return true;
    }
    return false;
}

void CControlPainter::drawComboBox(const QStyleOptionComboBox& option, QPainter* painter,
                                   const QRect& arrow)
{
    CStylePainter::editorPanel(painter, option, option.rect);
    const bool enabled = option.state & QStyle::State_Enabled;
    CStylePainter::icon(painter, arrow, QStringLiteral("gw_img_kit_chevron_down"), QString(),
                        enabled);
}

void CControlPainter::drawButton(const QStyleOption& option, QPainter* painter, bool primary)
{
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool pressed = enabled && (option.state & (QStyle::State_Sunken | QStyle::State_On));
    const QRect rect = option.rect;
    if (!enabled) {
        CStylePainter::panel(painter, rect, QStringLiteral("clr_button_disabled"),
                             QStringLiteral("clr_border_disabled"));
    } else if (primary) {
        QString key = QStringLiteral("clr_accent");
        if (pressed)
            key = QStringLiteral("clr_accent_pressed");
        else if (isHovered(option))
            key = QStringLiteral("clr_accent_hover");
        CStylePainter::panel(painter, rect, key, QString());
    } else {
        QString key = QStringLiteral("clr_button");
        if (pressed)
            key = QStringLiteral("clr_button_pressed");
        else if (isHovered(option))
            key = QStringLiteral("clr_button_hover");
        CStylePainter::panel(painter, rect, key,
                             isHovered(option) ? QStringLiteral("clr_border_hover")
                                               : QStringLiteral("clr_border_control"));
    }
}

void CControlPainter::drawFlatButton(const QStyleOption& option, QPainter* painter)
{
    if (!(option.state & QStyle::State_Enabled))
        return;
    if (option.state & (QStyle::State_Sunken | QStyle::State_On))
        CStylePainter::panel(painter, option.rect, QStringLiteral("clr_flat_pressed"), QString());
    else if (isHovered(option))
        CStylePainter::panel(painter, option.rect, QStringLiteral("clr_flat_hover"), QString());
}

} // namespace KZ
