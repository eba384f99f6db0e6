#include "kit/resources/KitProxyStyle.h"

#include "kit/resources/ControlPainter.h"
#include "kit/resources/ProgressPulse.h"
#include "kit/resources/UiResource.h"
#include "kit/resources/ViewPainter.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QProgressBar>
#include <QScrollBar>
#include <QStyleOption>
#include <QTabBar>
#include <QTreeView>

#include <algorithm>

namespace KZ {

namespace {

int size(const char* key)
{
    return CUiResource::getSize(QLatin1String(key));
}

} // namespace

CKitProxyStyle::CKitProxyStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void CKitProxyStyle::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (qobject_cast<QAbstractButton*>(widget) || qobject_cast<QLineEdit*>(widget) ||
        qobject_cast<QComboBox*>(widget) || qobject_cast<QScrollBar*>(widget) ||
        qobject_cast<QTabBar*>(widget))
        widget->setAttribute(Qt::WA_Hover);
    if (auto* const bar = qobject_cast<QProgressBar*>(widget))
        CProgressPulse::attach(bar);
}

void CKitProxyStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                   QPainter* painter, const QWidget* widget) const
{
    if (!CControlPainter::drawPrimitive(element, *option, painter, widget) &&
        !CViewPainter::drawPrimitive(element, *option, painter, widget))
        QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void CKitProxyStyle::drawControl(ControlElement element, const QStyleOption* option,
                                 QPainter* painter, const QWidget* widget) const
{
    if (const auto* const header = qstyleoption_cast<const QStyleOptionHeaderV2*>(option)) {
        if (element == CE_Header) {
            drawHeader(*header, painter, widget);
            return;
        }
        if (element == CE_HeaderLabel) {
            QStyleOptionHeaderV2 copy = *header;
            copy.palette.setColor(QPalette::ButtonText,
                                  CUiResource::getColor(QStringLiteral("clr_table_header_text")));
            QProxyStyle::drawControl(element, &copy, painter, widget);
            return;
        }
    }
    const auto* const item = qstyleoption_cast<const QStyleOptionViewItem*>(option);
    if (item && element == CE_ItemViewItem) {
        QStyleOptionViewItem copy = *item;
        const bool enabled = item->state & State_Enabled;
        copy.palette.setColor(enabled ? QPalette::All : QPalette::Disabled,
                              QPalette::HighlightedText,
                              CUiResource::getColor(enabled ? QStringLiteral("clr_selection_text")
                                                            : QStringLiteral("clr_text_disabled")));
        QProxyStyle::drawControl(element, &copy, painter, widget);
        return;
    }
    if (!CControlPainter::drawControl(element, *option, painter, widget) &&
        !CViewPainter::drawControl(element, *option, painter, *this))
        QProxyStyle::drawControl(element, option, painter, widget);
}

void CKitProxyStyle::drawHeader(const QStyleOptionHeaderV2& header, QPainter* painter,
                                const QWidget* widget) const
{
    // The base asks itself instead of this style where label and arrow go.
    painter->save();
    painter->setClipRect(header.rect);
    QStyleOptionHeaderV2 part = header;
    drawControl(CE_HeaderSection, &part, painter, widget);
    part.rect = CViewPainter::headerRect(header, false);
    drawControl(CE_HeaderLabel, &part, painter, widget);
    if (header.sortIndicator != QStyleOptionHeader::None) {
        part.rect = CViewPainter::headerRect(header, true);
        drawPrimitive(PE_IndicatorHeaderArrow, &part, painter, widget);
    }
    painter->restore();
}

void CKitProxyStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                        QPainter* painter, const QWidget* widget) const
{
    if (control == CC_ScrollBar) {
        CViewPainter::drawScrollBar(*option, painter,
                                    subControlRect(control, option, SC_ScrollBarSlider, widget));
        return;
    }
    const auto* const combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
    if (control == CC_ComboBox && combo) {
        CControlPainter::drawComboBox(*combo, painter,
                                      subControlRect(control, option, SC_ComboBoxArrow, widget));
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

int CKitProxyStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                                const QWidget* widget) const
{
    switch (metric) {
    case PM_DefaultFrameWidth:
    case PM_ComboBoxFrameWidth:
    case PM_MenuPanelWidth:
    case PM_ToolTipLabelFrameWidth:
    case PM_TextCursorWidth:
        return 1;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_TabBarTabOverlap:
    case PM_TabBarTabShiftHorizontal:
    case PM_TabBarTabShiftVertical:
    case PM_TabBarTabVSpace:
    case PM_TabBarBaseHeight:
    case PM_TabBarBaseOverlap:
    case PM_MenuHMargin:
    case PM_ScrollView_ScrollBarSpacing:
    case PM_ScrollView_ScrollBarOverlap:
        return 0;
    case PM_MenuVMargin:
        return size("gw_siz_kit_corner_radius");
    case PM_ButtonIconSize:
    case PM_SmallIconSize:
    case PM_ListViewIconSize:
    case PM_TabBarIconSize:
        return size("gw_siz_kit_icon");
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
        return size("gw_siz_kit_check_box");
    case PM_CheckBoxLabelSpacing:
        return size("gw_siz_kit_check_box_gap");
    case PM_ScrollBarExtent:
        return size("gw_siz_kit_scroll_bar");
    case PM_ScrollBarSliderMin:
        return size("gw_siz_kit_scroll_bar_handle_min");
    case PM_TabBarTabHSpace:
        return 2 * size("gw_siz_kit_tab_padding");
    case PM_HeaderMargin:
        return size("gw_siz_kit_table_cell_padding");
    case PM_FocusFrameHMargin:
        // The entries of a drop-down list begin where the text of its box does.
        if (qobject_cast<const QListView*>(widget) && widget->window()->windowType() == Qt::Popup)
            return size("gw_siz_kit_editor_padding") - 2;
        return QProxyStyle::pixelMetric(metric, option, widget);
    case PM_TreeViewIndentation:
        return size("gw_siz_kit_tree_indentation");
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int CKitProxyStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                              QStyleHintReturn* returnData) const
{
    switch (hint) {
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
    case SH_ComboBox_Popup:
    case SH_ScrollBar_Transient:
    case SH_Menu_SloppySubMenus:
    case SH_UnderlineShortcut:
        return 0;
    case SH_ItemView_ShowDecorationSelected:
    case SH_Menu_MouseTracking:
    case SH_ComboBox_ListMouseTracking:
    case SH_ScrollBar_LeftClickAbsolutePosition:
        return 1;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

QSize CKitProxyStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                       const QSize& contents, const QWidget* widget) const
{
    switch (type) {
    case CT_TabBarTab:
        return {contents.width(), size("gw_siz_kit_tab_height")};
    case CT_MenuItem:
        return CViewPainter::menuItemSize(*option, contents);
    case CT_PushButton:
        return {contents.width() + 2 * size("gw_siz_kit_button_padding"),
                size("gw_siz_kit_button_height")};
    case CT_ComboBox:
    case CT_LineEdit: {
        const QSize base = QProxyStyle::sizeFromContents(type, option, contents, widget);
        return {base.width(), std::max(contents.height(), size("gw_siz_kit_editor_height"))};
    }
    case CT_ItemViewItem: {
        QSize item = QProxyStyle::sizeFromContents(type, option, contents, widget);
        if (qobject_cast<const QTreeView*>(widget))
            item.setHeight(std::max(item.height(), size("gw_siz_kit_tree_row_height")));
        else if (widget && widget->window()->windowType() == Qt::Popup)
            item.setHeight(std::max(item.height(), size("gw_siz_kit_menu_item_height")));
        return item;
    }
    default:
        return QProxyStyle::sizeFromContents(type, option, contents, widget);
    }
}

QRect CKitProxyStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                     SubControl subControl, const QWidget* widget) const
{
    if (control == CC_ScrollBar) {
        if (const auto* const slider = qstyleoption_cast<const QStyleOptionSlider*>(option))
            return CViewPainter::scrollBarRect(*slider, subControl);
    }
    if (control == CC_ComboBox &&
        (subControl == SC_ComboBoxEditField || subControl == SC_ComboBoxArrow)) {
        const int arrow = size("gw_siz_kit_editor_button_width");
        const QRect rect = option->rect;
        QRect part;
        if (subControl == SC_ComboBoxArrow)
            part = QRect(rect.right() + 1 - arrow, rect.top(), arrow, rect.height());
        else
            part = rect.adjusted(size("gw_siz_kit_editor_padding") - 2, 2, -arrow, -2);
        return visualRect(option->direction, rect, part);
    }
    return QProxyStyle::subControlRect(control, option, subControl, widget);
}

QIcon CKitProxyStyle::standardIcon(StandardPixmap icon, const QStyleOption* option,
                                   const QWidget* widget) const
{
    // The base's picture is dark in every theme.
    if (icon == SP_LineEditClearButton)
        return CUiResource::getIcon(QStringLiteral("gw_img_kit_close"));
    return QProxyStyle::standardIcon(icon, option, widget);
}

QRect CKitProxyStyle::subElementRect(SubElement element, const QStyleOption* option,
                                     const QWidget* widget) const
{
    switch (element) {
    case SE_LineEditContents: {
        const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
        // The editor inside a combo box has no frame and is placed by the combo box.
        if (frame && frame->lineWidth > 0) {
            const int padding = size("gw_siz_kit_editor_padding") - 2;
            return option->rect.adjusted(padding, 1, -padding, -1);
        }
        return option->rect;
    }
    case SE_HeaderLabel:
    case SE_HeaderArrow:
        if (const auto* const header = qstyleoption_cast<const QStyleOptionHeader*>(option))
            return CViewPainter::headerRect(*header, element == SE_HeaderArrow);
        return QProxyStyle::subElementRect(element, option, widget);
    case SE_ProgressBarGroove:
    case SE_ProgressBarContents:
        return option->rect;
    default:
        return QProxyStyle::subElementRect(element, option, widget);
    }
}

} // namespace KZ
