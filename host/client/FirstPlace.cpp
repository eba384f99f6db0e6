#include "host/client/FirstPlace.h"

#include <QEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace host {

FirstPlace::FirstPlace(QWidget* window) : QObject(window), m_window(window)
{
    window->resize(window->size().boundedTo(window->screen()->availableSize()));
    window->installEventFilter(this);
}

bool FirstPlace::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window && event->type() == QEvent::Show && m_window->windowHandle()) {
        m_window->removeEventFilter(this);
        m_window->windowHandle()->installEventFilter(this);
    } else if (watched != m_window && event->type() == QEvent::Expose) {
        // Only now has a window manager given the window its frame.
        if (!std::exchange(m_placed, true))
            QMetaObject::invokeMethod(this, &FirstPlace::place, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

void FirstPlace::place()
{
    deleteLater();
    const QWindow* handle = m_window->windowHandle();
    if (!handle)
        return;
    const QRect available = handle->screen()->availableGeometry();
    QRect frame = handle->frameGeometry();
    if (available.contains(frame))
        return;
    const QSize border = frame.size() - handle->size();
    m_window->resize(m_window->size().boundedTo(available.size() - border));
    frame.setSize(m_window->size() + border);
    frame.moveTo(std::clamp(frame.x(), available.left(),
                            std::max(available.left(), available.right() + 1 - frame.width())),
                 std::clamp(frame.y(), available.top(),
                            std::max(available.top(), available.bottom() + 1 - frame.height())));
    m_window->move(frame.topLeft());
}

} // namespace host
