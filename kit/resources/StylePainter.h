#pragma once

#include <QRect>
#include <QString>

class QPainter;
class QStyleOption;

namespace KZ {

/// The strokes that everything in the kit's style is made of. Rectangles are in device-independent
/// pixels, colours are given by registry key.
class CStylePainter
{
public:
    CStylePainter() = delete;

    /// A filled rounded rectangle with a border of one pixel; an empty key leaves that part out.
    static void panel(QPainter* painter, const QRect& rect, const QString& fillKey,
                      const QString& borderKey);

    /// The ring that marks the keyboard focus, just inside `rect`.
    static void focusRing(QPainter* painter, const QRect& rect);

    /// Ground and border of an editor in the state of `option`.
    static void editorPanel(QPainter* painter, const QStyleOption& option, const QRect& rect);

    /// The square of a check box in the state of `option`, in the middle of `rect`.
    static void checkBox(QPainter* painter, const QStyleOption& option, const QRect& rect);

    /// An icon of the registry's icon size in the middle of `rect`; an empty colour key draws it
    /// in its own colour.
    static void icon(QPainter* painter, const QRect& rect, const QString& iconKey,
                     const QString& colorKey, bool enabled);

    /// Ground of an item or entry: selected, under the mouse, or nothing.
    static void itemGround(QPainter* painter, const QStyleOption& option, const QRect& rect);

    /// The bar at the beginning of a selected row, or of the current entry of a menu or list, whose
    /// ground alone is too near to that of its neighbours.
    static void rowMark(QPainter* painter, const QStyleOption& option, const QRect& rect);
    static void entryMark(QPainter* painter, const QStyleOption& option, const QRect& rect);

    static void fill(QPainter* painter, const QRect& rect, const QString& colorKey);
};

} // namespace KZ
