#include "tests/monkey/VirtualDispatcher.h"

#include <QCoreApplication>
#include <QTimerEvent>

#include <algorithm>

// Qt declares it in a header that is not installed everywhere; every dispatcher of a program with
// windows has to call it.
class Q_DECL_IMPORT QWindowSystemInterface
{
public:
    static bool sendWindowSystemEvents(QEventLoop::ProcessEventsFlags flags);
};

namespace monkey {

void VirtualDispatcher::settle()
{
    while (processEvents(QEventLoop::AllEvents) || moveOn()) {
    }
}

bool VirtualDispatcher::processEvents(QEventLoop::ProcessEventsFlags flags)
{
    m_interrupted = false;
    Q_EMIT awake();
    QCoreApplication::sendPostedEvents();
    bool did = QWindowSystemInterface::sendWindowSystemEvents(flags);
    if (!m_interrupted)
        did = fireDueTimers() || did;
    if (did || m_interrupted || !flags.testFlag(QEventLoop::WaitForMoreEvents))
        return did;
    if (moveOn())
        return true;
    Q_EMIT aboutToBlock();
    if (m_idle)
        m_idle();
    return true;
}

bool VirtualDispatcher::moveOn()
{
    if (m_now >= m_target)
        return false;
    qint64 next = m_target;
    for (const Timer& timer : std::as_const(m_timers)) {
        if (!timer.firing)
            next = std::min(next, timer.due);
    }
    m_now = std::max(m_now, next);
    return true;
}

bool VirtualDispatcher::fireDueTimers()
{
    QList<std::pair<std::pair<qint64, quint64>, int>> due;
    for (auto timer = m_timers.cbegin(); timer != m_timers.cend(); ++timer) {
        if (timer->due <= m_now && !timer->firing)
            due.append({{timer->due, timer->turn}, timer.key()});
    }
    std::sort(due.begin(), due.end());
    for (const auto& [when, id] : std::as_const(due)) {
        const auto timer = m_timers.find(id);
        // An earlier one may have stopped it, or stopped it and started another with its number.
        if (timer == m_timers.end() || timer->turn != when.second || timer->firing)
            continue;
        timer->turn = ++m_turns;
        const quint64 turn = timer->turn;
        // A timer without an interval would keep the loop from ever coming to rest.
        timer->due = m_now + std::max<qint64>(timer->interval, 1);
        timer->firing = true;
        QTimerEvent event(id);
        QCoreApplication::sendEvent(timer->object, &event);
        const auto after = m_timers.find(id);
        if (after != m_timers.end() && after->turn == turn)
            after->firing = false;
        if (m_interrupted)
            break;
    }
    return !due.isEmpty();
}

void VirtualDispatcher::registerTimer(int id, qint64 interval, Qt::TimerType type, QObject* object)
{
    m_timers.insert(id, {object, interval, type, m_now + interval, ++m_turns, false});
}

bool VirtualDispatcher::unregisterTimer(int id)
{
    return m_timers.remove(id) > 0;
}

bool VirtualDispatcher::unregisterTimers(QObject* object)
{
    return m_timers.removeIf([object](const auto& timer) { return timer->object == object; }) > 0;
}

QList<QAbstractEventDispatcher::TimerInfo>
VirtualDispatcher::registeredTimers(QObject* object) const
{
    QList<TimerInfo> found;
    for (auto timer = m_timers.cbegin(); timer != m_timers.cend(); ++timer) {
        if (timer->object == object)
            found.append(TimerInfo(timer.key(), static_cast<int>(timer->interval), timer->type));
    }
    return found;
}

int VirtualDispatcher::remainingTime(int id)
{
    const auto timer = m_timers.constFind(id);
    return timer == m_timers.constEnd() ? -1
                                        : static_cast<int>(std::max<qint64>(0, timer->due - m_now));
}

} // namespace monkey
