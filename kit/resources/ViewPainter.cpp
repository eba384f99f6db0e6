#include "kit/resources/ViewPainter.h"

#include "kit/resources/ProgressPulse.h"
#include "kit/resources/StylePainter.h"
#include "kit/resources/UiResource.h"

#include <QAbstractItemView>
#include <QListView>
#include <QPainter>
#include <QStyleOption>
#include <QTreeView>

#include <algorithm>

namespace KZ {

namespace {

int size(const char* key)
{
    return CUiResource::getSize(QLatin1String(key));
}

QColor color(const char* key)
{
    return CUiResource::getColor(QLatin1String(key));
}

void drawFrame(const QStyleOption& option, QPainter* painter, const QWidget* widget)
{
    const bool focused = qobject_cast<const QAbstractItemView*>(widget) &&
                         (option.state & QStyle::State_HasFocus) &&
                         (option.state & QStyle::State_KeyboardFocusChange);
    // What pops up lies on grounds of every colour, so its edge has to be as strong as a control's.
    const bool popsUp = widget && widget->isWindow() && widget->windowType() == Qt::Popup;
    const char* key = popsUp ? "clr_border_control" : "clr_border";
    painter->save();
    painter->setPen(color(focused ? "clr_focus" : key));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
    painter->restore();
}

void drawBranch(const QStyleOption& option, QPainter* painter)
{
    if (!(option.state & QStyle::State_Children))
        return;
    const bool open = option.state & QStyle::State_Open;
    const bool enabled = option.state & QStyle::State_Enabled;
    CStylePainter::icon(painter, option.rect,
                        open ? QStringLiteral("gw_img_kit_chevron_down")
                             : QStringLiteral("gw_img_kit_chevron_right"),
                        QString(), enabled);
}

void drawTreeRow(const QStyleOption& option, QPainter* painter)
{
    CStylePainter::itemGround(painter, option, option.rect);
    if (option.state & QStyle::State_Selected)
        CStylePainter::rowMark(painter, option, option.rect);
}

void drawTabShape(const QStyleOption& option, QPainter* painter)
{
    const QRect rect = option.rect;
    if (option.state & QStyle::State_Selected) {
        const int line = size("gw_siz_kit_tab_underline");
        const int inset = size("gw_siz_kit_tab_padding") / 2;
        CStylePainter::fill(
            painter,
            QRect(rect.left() + inset, rect.bottom() + 1 - line, rect.width() - 2 * inset, line),
            option.state & QStyle::State_Enabled ? QStringLiteral("clr_accent_text")
                                                 : QStringLiteral("clr_icon_disabled"));
    } else if ((option.state & QStyle::State_MouseOver) && (option.state & QStyle::State_Enabled)) {
        CStylePainter::panel(painter, rect.adjusted(2, 4, -2, -4), QStringLiteral("clr_hover"),
                             QString());
    }
}

void drawTabLabel(const QStyleOptionTab& option, QPainter* painter, const QStyle& style)
{
    const char* key = "clr_tab_text";
    if (!(option.state & QStyle::State_Enabled))
        key = "clr_text_disabled";
    else if (option.state & QStyle::State_Selected)
        key = "clr_tab_text_current";
    else if (option.state & QStyle::State_MouseOver)
        key = "clr_text";
    painter->save();
    painter->setPen(color(key));
    style.drawItemText(painter, option.rect, Qt::AlignCenter | Qt::TextHideMnemonic, option.palette,
                       true, option.text);
    painter->restore();
    if ((option.state & QStyle::State_HasFocus) &&
        (option.state & QStyle::State_KeyboardFocusChange))
        CStylePainter::focusRing(painter, option.rect.adjusted(2, 4, -2, -4));
}

void drawMenuItem(const QStyleOptionMenuItem& option, QPainter* painter, const QStyle& style)
{
    const QRect rect = option.rect;
    const int padding = size("gw_siz_kit_menu_padding");
    if (option.menuItemType == QStyleOptionMenuItem::Separator) {
        CStylePainter::fill(
            painter, QRect(rect.left() + padding, rect.center().y(), rect.width() - 2 * padding, 1),
            QStringLiteral("clr_border"));
        return;
    }
    const bool enabled = option.state & QStyle::State_Enabled;
    if (enabled && (option.state & QStyle::State_Selected)) {
        CStylePainter::fill(painter, rect, QStringLiteral("clr_selection"));
        CStylePainter::entryMark(painter, option, rect);
    }
    QRect text = rect.adjusted(padding, 0, -padding, 0);
    const bool checkable = option.checkType != QStyleOptionMenuItem::NotCheckable;
    const int iconSide = size("gw_siz_kit_icon");
    if (checkable || !option.icon.isNull() || option.maxIconWidth > 0) {
        const QRect place(text.left(), rect.top(), iconSide, rect.height());
        if (checkable && option.checked)
            CStylePainter::icon(painter, place, QStringLiteral("gw_img_kit_check"),
                                enabled ? QStringLiteral("clr_icon") : QString(), enabled);
        else if (!option.icon.isNull())
            option.icon.paint(painter, place, Qt::AlignCenter,
                              enabled ? QIcon::Normal : QIcon::Disabled);
        text.setLeft(text.left() + iconSide + padding / 2);
    }
    painter->save();
    painter->setFont(option.font);
    const QString label = option.text.section(QLatin1Char('\t'), 0, 0);
    const QString shortcut = option.text.section(QLatin1Char('\t'), 1, 1);
    painter->setPen(color(enabled ? "clr_text" : "clr_text_disabled"));
    style.drawItemText(painter, text, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextHideMnemonic,
                       option.palette, true, label);
    if (!shortcut.isEmpty()) {
        painter->setPen(color(enabled ? "clr_text_quiet" : "clr_text_disabled"));
        style.drawItemText(painter, text, Qt::AlignVCenter | Qt::AlignRight, option.palette, true,
                           shortcut);
    }
    painter->restore();
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu)
        CStylePainter::icon(painter,
                            QRect(rect.right() - iconSide, rect.top(), iconSide, rect.height()),
                            QStringLiteral("gw_img_kit_chevron_right"), QString(), enabled);
}

void drawHeaderSection(const QStyleOption& option, QPainter* painter)
{
    const QRect rect = option.rect;
    const bool hovered =
        (option.state & QStyle::State_MouseOver) && (option.state & QStyle::State_Enabled);
    CStylePainter::fill(painter, rect,
                        hovered ? QStringLiteral("clr_hover") : QStringLiteral("clr_table_header"));
    const QString line = QStringLiteral("clr_border");
    CStylePainter::fill(painter, QRect(rect.left(), rect.bottom(), rect.width(), 1), line);
    CStylePainter::fill(painter, QRect(rect.right(), rect.top() + 6, 1, rect.height() - 12), line);
}

void drawProgressContents(const QStyleOptionProgressBar& option, QPainter* painter)
{
    const QRect rect = option.rect;
    if (option.minimum == option.maximum) {
        const int length = rect.width() / 3;
        const double run = CProgressPulse::phase() * (rect.width() + length) - length;
        painter->save();
        painter->setClipRect(rect);
        CStylePainter::panel(painter,
                             QRect(rect.left() + int(run), rect.top(), length, rect.height()),
                             QStringLiteral("clr_progress"), QString());
        painter->restore();
        return;
    }
    const double share =
        (double(option.progress) - option.minimum) / (double(option.maximum) - option.minimum);
    const int length = int(rect.width() * std::clamp(share, 0.0, 1.0));
    if (length > 0)
        CStylePainter::panel(painter, QRect(rect.left(), rect.top(), length, rect.height()),
                             QStringLiteral("clr_progress"), QString());
}

} // namespace

bool CViewPainter::drawPrimitive(QStyle::PrimitiveElement element, const QStyleOption& option,
                                 QPainter* painter, const QWidget* widget)
{
    switch (element) {
    case QStyle::PE_Frame:
    case QStyle::PE_FrameWindow:
        drawFrame(option, painter, widget);
        return true;
    case QStyle::PE_PanelMenu:
        CStylePainter::fill(painter, option.rect, QStringLiteral("clr_menu"));
        return true;
    case QStyle::PE_FrameMenu:
        drawFrame(option, painter, widget);
        return true;
    case QStyle::PE_PanelItemViewRow:
        if (qobject_cast<const QTreeView*>(widget))
            drawTreeRow(option, painter);
        return true;
    case QStyle::PE_PanelItemViewItem:
        CStylePainter::itemGround(painter, option, option.rect);
        if (qobject_cast<const QListView*>(widget) && (option.state & QStyle::State_Selected))
            CStylePainter::entryMark(painter, option, option.rect);
        return true;
    case QStyle::PE_IndicatorBranch:
        drawBranch(option, painter);
        return true;
    case QStyle::PE_IndicatorHeaderArrow: {
        const auto* const header = qstyleoption_cast<const QStyleOptionHeader*>(&option);
        // The header view asks for "down" when it sorts ascending; people read an upward mark so.
        const bool up = header && header->sortIndicator == QStyleOptionHeader::SortDown;
        CStylePainter::icon(painter, option.rect,
                            up ? QStringLiteral("gw_img_kit_chevron_up")
                               : QStringLiteral("gw_img_kit_chevron_down"),
                            QString(), true);
        return true;
    }
    case QStyle::PE_FrameTabBarBase:
        return true;
    case QStyle::PE_PanelScrollAreaCorner:
        painter->fillRect(option.rect, option.palette.brush(QPalette::Base));
        return true;
    case QStyle::PE_PanelTipLabel:
        CStylePainter::fill(painter, option.rect, QStringLiteral("clr_tool_tip"));
        return true;
    default:
        return false;
    }
}

bool CViewPainter::drawControl(QStyle::ControlElement element, const QStyleOption& option,
                               QPainter* painter, const QStyle& style)
{
    switch (element) {
    case QStyle::CE_TabBarTabShape:
        drawTabShape(option, painter);
        return true;
    case QStyle::CE_TabBarTabLabel:
        if (const auto* const tab = qstyleoption_cast<const QStyleOptionTab*>(&option)) {
            drawTabLabel(*tab, painter, style);
            return true;
        }
        return false;
    case QStyle::CE_MenuItem:
        if (const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(&option)) {
            drawMenuItem(*item, painter, style);
            return true;
        }
        return false;
    case QStyle::CE_MenuEmptyArea:
        CStylePainter::fill(painter, option.rect, QStringLiteral("clr_menu"));
        return true;
    case QStyle::CE_HeaderSection:
        drawHeaderSection(option, painter);
        return true;
    case QStyle::CE_HeaderEmptyArea:
        CStylePainter::fill(painter, option.rect, QStringLiteral("clr_table_header"));
        CStylePainter::fill(painter,
                            QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1),
                            QStringLiteral("clr_border"));
        return true;
    case QStyle::CE_ProgressBarGroove:
        CStylePainter::panel(painter, option.rect, QStringLiteral("clr_progress_track"),
                             QStringLiteral("clr_border_control"));
        return true;
    case QStyle::CE_ProgressBarContents:
        if (const auto* const bar = qstyleoption_cast<const QStyleOptionProgressBar*>(&option)) {
            drawProgressContents(*bar, painter);
            return true;
        }
        return false;
    default:
        return false;
    }
}

void CViewPainter::drawScrollBar(const QStyleOption& option, QPainter* painter, const QRect& handle)
{
    // The strip belongs to its view, whatever ground that has.
    painter->fillRect(option.rect, option.palette.brush(QPalette::Base));
    if (handle.isEmpty())
        return;
    QString key = QStringLiteral("clr_scroll_bar");
    if (!(option.state & QStyle::State_Enabled))
        key = QStringLiteral("clr_border_disabled");
    else if (option.state & (QStyle::State_Sunken | QStyle::State_MouseOver))
        key = QStringLiteral("clr_scroll_bar_hover");
    CStylePainter::panel(painter, handle.adjusted(2, 2, -2, -2), key, QString());
}

QRect CViewPainter::scrollBarRect(const QStyleOptionSlider& option, QStyle::SubControl part)
{
    const bool horizontal = option.orientation == Qt::Horizontal;
    const QRect rect = option.rect;
    const int room = horizontal ? rect.width() : rect.height();
    const qint64 range = qint64(option.maximum) - option.minimum;
    int length = room;
    if (range > 0)
        length = std::clamp(int(room * qint64(option.pageStep) / (range + option.pageStep)),
                            std::min(room, size("gw_siz_kit_scroll_bar_handle_min")), room);
    const int start = QStyle::sliderPositionFromValue(
        option.minimum, option.maximum, option.sliderPosition, room - length, option.upsideDown);
    const auto slice = [&](int from, int to) {
        const QRect piece = horizontal
                                ? QRect(rect.left() + from, rect.top(), to - from, rect.height())
                                : QRect(rect.left(), rect.top() + from, rect.width(), to - from);
        return QStyle::visualRect(option.direction, rect, piece);
    };
    switch (part) {
    case QStyle::SC_ScrollBarGroove:
        return rect;
    case QStyle::SC_ScrollBarSlider:
        return slice(start, start + length);
    case QStyle::SC_ScrollBarSubPage:
        return slice(0, start);
    case QStyle::SC_ScrollBarAddPage:
        return slice(start + length, room);
    default:
        return {};
    }
}

QRect CViewPainter::headerRect(const QStyleOptionHeader& option, bool arrow)
{
    const int padding = size("gw_siz_kit_table_cell_padding");
    const int side = size("gw_siz_kit_icon");
    const QRect rect = option.rect;
    QRect place = rect.adjusted(padding, 0, -padding, 0);
    if (arrow)
        place.setRect(rect.right() - side - padding / 2, rect.center().y() - side / 2, side, side);
    else if (option.sortIndicator != QStyleOptionHeader::None)
        place.setRight(rect.right() - side - padding / 2);
    return QStyle::visualRect(option.direction, rect, place);
}

QSize CViewPainter::menuItemSize(const QStyleOption& option, const QSize& contents)
{
    const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(&option);
    const int padding = size("gw_siz_kit_menu_padding");
    if (item && item->menuItemType == QStyleOptionMenuItem::Separator)
        return {contents.width(), padding - 3};
    int width = contents.width() + 2 * padding;
    if (item) {
        if (item->checkType != QStyleOptionMenuItem::NotCheckable || !item->icon.isNull() ||
            item->maxIconWidth > 0)
            width += size("gw_siz_kit_icon") + padding / 2;
        if (item->reservedShortcutWidth > 0)
            width += item->reservedShortcutWidth + 2 * padding;
    }
    return {width, size("gw_siz_kit_menu_item_height")};
}

} // namespace KZ
