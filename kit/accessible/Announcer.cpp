#include "kit/accessible/Announcer.h"

#include <QAccessible>
#include <QEvent>
#include <QWidget>

namespace KZ {

CAnnouncer::CAnnouncer(QWidget* message) : QObject(message), m_message(message)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &CAnnouncer::announce);
    message->installEventFilter(this);
}

void CAnnouncer::setTexts(const QStringList& texts)
{
    m_texts = texts;
    if (m_message->isVisible())
        m_timer.start();
}

bool CAnnouncer::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show)
        m_timer.start();
    else if (event->type() == QEvent::Hide)
        m_isShown = false;
    return QObject::eventFilter(watched, event);
}

void CAnnouncer::announce()
{
    if (!m_message->isVisible() || m_told >= m_texts.size())
        return;
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent announcement(m_message, m_texts.mid(m_told).join(u'\n'));
    QAccessible::updateAccessibility(&announcement);
#endif
    m_told = m_texts.size();
    if (m_isShown)
        return;
    m_isShown = true;
    QAccessibleEvent shown(m_message, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}

} // namespace KZ
