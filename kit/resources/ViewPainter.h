#pragma once

#include <QStyle>

class QStyleOptionHeader;
class QStyleOptionSlider;

namespace KZ {

/// Draws the kit's menus, tabs, scroll bars, progress bars and the parts of lists, trees and
/// tables. The draw functions answer false, drawing nothing, for an element that is not theirs.
class CViewPainter
{
public:
    CViewPainter() = delete;

    static bool drawPrimitive(QStyle::PrimitiveElement element, const QStyleOption& option,
                              QPainter* painter, const QWidget* widget);
    static bool drawControl(QStyle::ControlElement element, const QStyleOption& option,
                            QPainter* painter, const QStyle& style);
    static void drawScrollBar(const QStyleOption& option, QPainter* painter, const QRect& handle);

    /// Place of a part of a scroll bar; it has no arrow buttons.
    static QRect scrollBarRect(const QStyleOptionSlider& option, QStyle::SubControl part);

    /// Place of a header section's text, or of its sort arrow, which stands at the trailing edge.
    static QRect headerRect(const QStyleOptionHeader& option, bool arrow);

    /// Size of a menu entry whose icon and text measure `contents`.
    static QSize menuItemSize(const QStyleOption& option, const QSize& contents);
};

} // namespace KZ
