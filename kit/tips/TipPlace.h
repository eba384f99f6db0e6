#pragma once

#include <QList>
#include <QPolygon>
#include <QRect>
#include <QRegion>

#include <optional>

class QWidget;

namespace KZ {

/// Where a tip stands on the screen, in global coordinates, and where its arrow points.
class CTipPlace
{
public:
    enum class Arrow { None, Up, Down };

    /// The window that a tip at `anchor` belongs to: that of the anchor's nearest visible
    /// ancestor, else the window the user works in; null when the program shows none.
    static QWidget* windowFor(QWidget* anchor);
    /// Whether the user can see `anchor` (may be null) with no modal dialog between, so that a tip
    /// points at it.
    static bool isSeen(QWidget* anchor);

    /// Finds the place of a tip with a content of `size` that belongs to `window` (may be null),
    /// beside `anchor` as `alignment` says, on the screen and off the other tips at `taken`. When
    /// the anchor has been hidden since the last time, the tip stays where it is on its window.
    void find(QWidget* anchor, QWidget* window, int alignment, const QSize& size,
              const QList<QRect>& taken);

    /// The whole tip, its arrow included.
    const QRect& geometry() const { return m_geometry; }
    Arrow arrow() const { return m_arrow; }

    /// The tip without its arrow, in coordinates of the tip.
    QRect box() const;
    /// The line around box and arrow, in coordinates of the tip.
    QPolygon outline() const;
    /// What the tip covers, in coordinates of the tip.
    QRegion shape() const;

private:
    void standBeside(const QRect& target, const QRect& screen, int alignment, const QSize& size);
    bool makeRoom(const QList<QRect>& taken, const QRect& screen);
    void makeRoomAside(const QList<QRect>& taken, const QRect& screen, const QSize& size);

    QRect m_geometry;
    Arrow m_arrow = Arrow::None;
    /// Distance of the arrow's point from the tip's left edge.
    int m_arrowX = 0;
    /// Where the box stood beside the anchor, in coordinates of the window.
    std::optional<QPoint> m_besideAnchor;
};

} // namespace KZ
