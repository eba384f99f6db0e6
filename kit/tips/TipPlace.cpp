#include "kit/tips/TipPlace.h"

#include "kit/resources/UiResource.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace KZ {

namespace {

bool isShown(const QWidget* widget)
{
    return widget->isVisible() && !widget->window()->isMinimized() &&
           !widget->visibleRegion().isEmpty();
}

/// The widget itself or its nearest ancestor, over windows, that the user can see.
QWidget* shownPart(QWidget* widget)
{
    while (widget && !isShown(widget))
        widget = widget->parentWidget();
    return widget;
}

bool isAncestor(const QWidget* ancestor, const QWidget* widget)
{
    while (widget && widget != ancestor)
        widget = widget->parentWidget();
    return widget;
}

/// The modal dialog that keeps the user from `window`, null when none does.
QWidget* blockingDialog(const QWidget* window)
{
    QWidget* const modal = QApplication::activeModalWidget();
    if (!modal || isAncestor(modal, window))
        return nullptr;
    const bool blocks =
        modal->windowModality() == Qt::ApplicationModal || isAncestor(window, modal);
    return blocks ? modal : nullptr;
}

bool isProgramWindow(const QWidget* window)
{
    const Qt::WindowType type = window->windowType();
    return type != Qt::ToolTip && type != Qt::Popup && type != Qt::SplashScreen && isShown(window);
}

QWidget* workingWindow()
{
    QWidget* active = QApplication::activeWindow();
    while (active && !isProgramWindow(active))
        active = active->parentWidget() ? active->parentWidget()->window() : nullptr;
    if (active)
        return active;
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal && isProgramWindow(modal))
        return modal;
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto found = std::find_if(windows.begin(), windows.end(), isProgramWindow);
    return found == windows.end() ? nullptr : *found;
}

QRect visibleRect(const QWidget* widget)
{
    const QRect rect = widget->visibleRegion().boundingRect();
    return QRect(widget->mapToGlobal(rect.topLeft()), rect.size());
}

QRect screenAround(const QRect& target)
{
    const QScreen* screen = QGuiApplication::screenAt(target.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : target;
}

/// `rect` moved into `screen`; one that is too large begins where the screen does.
QRect movedInto(const QRect& screen, QRect rect)
{
    rect.moveLeft(std::clamp(rect.left(), screen.left(),
                             std::max(screen.left(), screen.right() + 1 - rect.width())));
    rect.moveTop(std::clamp(rect.top(), screen.top(),
                            std::max(screen.top(), screen.bottom() + 1 - rect.height())));
    return rect;
}

enum class Way { Up, Down, Left, Right };

/// `rect` moved off those at `taken` in one direction, nothing when the screen ends before.
std::optional<QRect> movedOff(const QList<QRect>& taken, const QRect& screen, QRect rect, Way way,
                              int distance)
{
    // Each round leaves one neighbour behind for good, because all moves go the same way.
    for (qsizetype round = 0; round <= taken.size(); ++round) {
        const auto hit = std::find_if(taken.begin(), taken.end(), [&rect](const QRect& other) {
            return other.intersects(rect);
        });
        if (hit == taken.end())
            break;
        if (way == Way::Up)
            rect.moveBottom(hit->top() - 1 - distance);
        else if (way == Way::Down)
            rect.moveTop(hit->bottom() + 1 + distance);
        else if (way == Way::Left)
            rect.moveRight(hit->left() - 1 - distance);
        else
            rect.moveLeft(hit->right() + 1 + distance);
    }
    return screen.contains(rect) ? std::optional(rect) : std::nullopt;
}

int registrySize(const char* key)
{
    return CUiResource::getSize(QLatin1String(key));
}

} // namespace

QWidget* CTipPlace::windowFor(QWidget* anchor)
{
    QWidget* const part = shownPart(anchor);
    QWidget* const window = part ? part->window() : workingWindow();
    if (!window)
        return nullptr;
    QWidget* const blocking = blockingDialog(window);
    return blocking && isShown(blocking) ? blocking : window;
}

bool CTipPlace::isSeen(QWidget* anchor)
{
    return anchor && isShown(anchor) && windowFor(anchor) == anchor->window();
}

void CTipPlace::find(QWidget* anchor, QWidget* window, int alignment, const QSize& size,
                     const QList<QRect>& taken)
{
    m_arrow = Arrow::None;
    QWidget* part = shownPart(anchor);
    if (part && part->window() != window)
        part = nullptr;
    if (!part)
        part = window;
    if (part && part == anchor) {
        const QRect target = visibleRect(part);
        const QRect screen = screenAround(target);
        standBeside(target, screen, alignment, size);
        if (!makeRoom(taken, screen)) {
            const CTipPlace first = *this;
            standBeside(target, screen, alignment ^ Qt::AlignTop, size);
            if (!makeRoom(taken, screen)) {
                *this = first;
                makeRoomAside(taken, screen, size);
            }
        }
        m_besideAnchor = window->mapFromGlobal(m_geometry.topLeft() + box().topLeft());
        return;
    }
    if (anchor && window && m_besideAnchor) {
        m_geometry = QRect(window->mapToGlobal(*m_besideAnchor), size);
        const QRect screen = screenAround(m_geometry);
        m_geometry = movedInto(screen, m_geometry);
        if (!makeRoom(taken, screen))
            makeRoomAside(taken, screen, size);
        return;
    }
    QRect ground;
    if (part)
        ground = QRect(part->mapToGlobal(QPoint()), part->size());
    else if (const QScreen* screen = QGuiApplication::primaryScreen())
        ground = screen->availableGeometry();
    const QRect screen = screenAround(ground);
    m_geometry = QRect(QPoint(), size);
    m_geometry.moveCenter(ground.center());
    m_geometry = movedInto(screen, m_geometry);
    if (!makeRoom(taken, screen))
        makeRoomAside(taken, screen, size);
}

QRect CTipPlace::box() const
{
    const int arrow = registrySize("gw_siz_kit_tip_arrow");
    QRect box(QPoint(), m_geometry.size());
    if (m_arrow == Arrow::Up)
        box.setTop(box.top() + arrow);
    else if (m_arrow == Arrow::Down)
        box.setBottom(box.bottom() - arrow);
    return box;
}

QPolygon CTipPlace::outline() const
{
    const int arrow = registrySize("gw_siz_kit_tip_arrow");
    const QRect frame = box();
    QPolygon line;
    line << frame.topLeft();
    if (m_arrow == Arrow::Up)
        line << QPoint(m_arrowX - arrow, frame.top()) << QPoint(m_arrowX, frame.top() - arrow)
             << QPoint(m_arrowX + arrow, frame.top());
    line << frame.topRight() << frame.bottomRight();
    if (m_arrow == Arrow::Down)
        line << QPoint(m_arrowX + arrow, frame.bottom()) << QPoint(m_arrowX, frame.bottom() + arrow)
             << QPoint(m_arrowX - arrow, frame.bottom());
    line << frame.bottomLeft();
    return line;
}

QRegion CTipPlace::shape() const
{
    // A region of a polygon leaves out the pixels of its right and lower edges.
    const QPolygon line = outline();
    return QRegion(line).united(line.translated(1, 0)).united(line.translated(0, 1)).united(box());
}

void CTipPlace::standBeside(const QRect& target, const QRect& screen, int alignment,
                            const QSize& content)
{
    const int arrow = registrySize("gw_siz_kit_tip_arrow");
    const int distance = registrySize("gw_siz_kit_tip_distance");
    const int offset = registrySize("gw_siz_kit_tip_arrow_offset");
    const int height = content.height() + arrow;

    const int roomAbove = target.top() - screen.top() - distance;
    const int roomBelow = screen.bottom() - target.bottom() - distance;
    bool above = alignment & Qt::AlignTop;
    if ((above ? roomAbove : roomBelow) < height)
        above = roomAbove > roomBelow;
    int top = above ? target.top() - distance - height : target.bottom() + 1 + distance;
    top = std::clamp(top, screen.top(), std::max(screen.top(), screen.bottom() + 1 - height));

    int left = target.left();
    if (alignment & Qt::AlignRight)
        left = target.right() + 1 - content.width();
    else if (alignment & Qt::AlignHCenter)
        left = target.center().x() - content.width() / 2;
    left = std::clamp(left, screen.left(),
                      std::max(screen.left(), screen.right() + 1 - content.width()));

    m_geometry = QRect(left, top, content.width(), height);
    m_arrow = above ? Arrow::Down : Arrow::Up;
    int pointAt = target.left() + std::min(target.width() / 2, offset);
    if (alignment & Qt::AlignRight)
        pointAt = target.right() - std::min(target.width() / 2, offset);
    else if (alignment & Qt::AlignHCenter)
        pointAt = target.center().x();
    m_arrowX =
        std::clamp(pointAt - left, 2 * arrow, std::max(2 * arrow, content.width() - 2 * arrow));
}

/// Moves away from the anchor; false when the other tips leave no room on that side of it.
bool CTipPlace::makeRoom(const QList<QRect>& taken, const QRect& screen)
{
    const std::optional<QRect> moved =
        movedOff(taken, screen, m_geometry, m_arrow == Arrow::Down ? Way::Up : Way::Down,
                 registrySize("gw_siz_kit_tip_distance"));
    if (moved)
        m_geometry = *moved;
    return moved.has_value();
}

/// Moves beside the other tips, without an arrow, which would point at one of them; with no room
/// there either it covers what it has to.
void CTipPlace::makeRoomAside(const QList<QRect>& taken, const QRect& screen, const QSize& size)
{
    const QRect plain(m_geometry.topLeft(), size);
    QList<Way> ways{Way::Right, Way::Left};
    // Beside an anchor both sides have been tried, and what comes next upwards is the anchor.
    if (m_arrow == Arrow::None)
        ways.prepend(Way::Up);
    for (const Way way : std::as_const(ways)) {
        const std::optional<QRect> moved =
            movedOff(taken, screen, plain, way, registrySize("gw_siz_kit_tip_distance"));
        if (moved) {
            m_geometry = *moved;
            m_arrow = Arrow::None;
            return;
        }
    }
}

} // namespace KZ
