#pragma once

#include <QStyle>

class QStyleOptionComboBox;

namespace KZ {

/// Draws the kit's buttons, editors and check boxes. The draw functions answer false, drawing
/// nothing, for an element that is not theirs.
class CControlPainter
{
public:
    CControlPainter() = delete;

    static bool drawPrimitive(QStyle::PrimitiveElement element, const QStyleOption& option,
                              QPainter* painter, const QWidget* widget);
    static bool drawControl(QStyle::ControlElement element, const QStyleOption& option,
                            QPainter* painter, const QWidget* widget);

    /// Everything of a combo box but its text.
    static void drawComboBox(const QStyleOptionComboBox& option, QPainter* painter,
                             const QRect& arrow);

    /// Ground of a push button in the state of `option`.
    static void drawButton(const QStyleOption& option, QPainter* painter, bool primary);

    /// Ground of a button that shows itself only under the mouse.
    static void drawFlatButton(const QStyleOption& option, QPainter* painter);
};

} // namespace KZ
