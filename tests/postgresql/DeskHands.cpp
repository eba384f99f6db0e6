#include "tests/postgresql/DeskHands.h"

#include "host/tour/TourPlaces.h"

#include <QKeySequence>
#include <QTest>
#include <QWidget>
#include <QWindow>

using host::TourPlace;
using host::TourPlaces;

namespace {

bool click(const TourPlace& place)
{
    if (!place.widget || !place.widget->isVisible() || !place.widget->isEnabled())
        return false;
    // The offscreen platform's screen is smaller than the windows, so it cannot be asked.
    const QWidget* window = place.widget->window();
    const QPoint centre = window->mapFromGlobal(place.area.center());
    const QWidget* hit = window->childAt(centre);
    if (place.widget != window && hit != place.widget && !place.widget->isAncestorOf(hit))
        return false;
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, centre);
    return true;
}

// What has just been scrolled to is drawn, and has its widgets, in the next turn of the event loop.
bool clickResting(const TourPlace& place)
{
    static TourPlace last;
    const bool rests = place.widget == last.widget && place.area == last.area;
    last = rests ? TourPlace() : place;
    return rests && click(place);
}

bool press(const QString& text)
{
    const QWidget* window = TourPlaces::window();
    const QKeySequence keys = QKeySequence::fromString(text);
    if (!window || keys.isEmpty())
        return false;
    QTest::keyClick(window->windowHandle(), keys[0].key(), keys[0].keyboardModifiers());
    return true;
}

bool type(const QString& editor, const QString& text)
{
    if (!click(TourPlaces::named(editor)))
        return false;
    QWindow* window = TourPlaces::window()->windowHandle();
    QTest::keyClick(window, Qt::Key_A, Qt::ControlModifier);
    for (const QChar letter : text)
        QTest::keyClick(window, letter.toLatin1());
    QTest::keyClick(window, Qt::Key_Tab);
    return true;
}

} // namespace

bool DeskHands::act(const QStringList& order)
{
    const QString verb = order.value(0);
    const QString object = order.value(1);
    if (verb == QStringLiteral("click"))
        return click(TourPlaces::button(object));
    if (verb == QStringLiteral("tab"))
        return click(TourPlaces::tab(object));
    if (verb == QStringLiteral("menu"))
        return click(TourPlaces::menuItem(object));
    if (verb == QStringLiteral("cell"))
        return clickResting(TourPlaces::cell(object, order.value(2).toInt()));
    if (verb == QStringLiteral("type"))
        return type(object, order.value(2));
    return verb == QStringLiteral("press") && press(object);
}
