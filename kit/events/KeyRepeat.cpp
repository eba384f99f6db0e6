#include "kit/events/KeyRepeat.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPointer>

namespace KZ {

namespace {

QPointer<CKeyRepeat>& watcher()
{
    static QPointer<CKeyRepeat> instance;
    return instance;
}

bool& repeats()
{
    static bool value = false;
    return value;
}

} // namespace

CKeyRepeat::CKeyRepeat(QObject* parent) : QObject(parent)
{
    parent->installEventFilter(this);
}

void CKeyRepeat::watch()
{
    if (!watcher())
        watcher() = new CKeyRepeat(qApp);
}

bool CKeyRepeat::isUnderWay()
{
    return repeats();
}

bool CKeyRepeat::eventFilter(QObject*, QEvent* event)
{
    // Qt offers every key in this way before it looks for its shortcut.
    if (event->type() == QEvent::ShortcutOverride)
        repeats() = static_cast<QKeyEvent*>(event)->isAutoRepeat();
    return false;
}

} // namespace KZ
