#include "kit/tips/TipKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

namespace KZ {

CTipKeys::CTipKeys(QWidget* window, QObject* parent) : QObject(parent), m_window(window) {}

void CTipKeys::setActive(bool active)
{
    if (m_active == active)
        return;
    m_active = active;
    if (active)
        qApp->installEventFilter(this);
    else
        qApp->removeEventFilter(this);
}

bool CTipKeys::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
        return false;
    const auto* const widget = qobject_cast<QWidget*>(watched);
    if (!widget || (m_window && widget->window() != m_window))
        return false;
    const QKeyCombination pressed = static_cast<QKeyEvent*>(event)->keyCombination();
    const bool isEscape = pressed == QKeyCombination(Qt::Key_Escape);
    const bool isUp = pressed == (Qt::AltModifier | Qt::Key_PageUp);
    const bool isDown = pressed == (Qt::AltModifier | Qt::Key_PageDown);
    const bool isCopy = pressed == (Qt::ControlModifier | Qt::ShiftModifier | Qt::Key_C);
    if (!isEscape && !isUp && !isDown && !isCopy)
        return false;
    event->accept();
    if (event->type() == QEvent::ShortcutOverride)
        return true;
    if (isEscape)
        Q_EMIT dismissed();
    else if (isCopy)
        Q_EMIT copyRequested();
    else
        Q_EMIT scrolled(isUp ? -1 : 1);
    return true;
}

} // namespace KZ
