#pragma once

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QHash>

#include <functional>

namespace monkey {

/// The main thread's event dispatcher on a clock of its own: timers are due when advance() has
/// brought the clock there, never because the machine was slow. Whenever an event loop, also a
/// nested one, would wait for something to happen, it asks the idle function instead, so whoever
/// sets it is the only source of what happens. Install it before the application is made.
/// GUI thread only, but for wakeUp().
class VirtualDispatcher : public QAbstractEventDispatcher
{
    Q_OBJECT

public:
    VirtualDispatcher() = default;

    /// Called at rest from inside the innermost event loop; it may run event loops itself.
    void setIdle(std::function<void()> idle) { m_idle = std::move(idle); }

    /// Milliseconds since the dispatcher was made.
    qint64 now() const { return m_now; }
    /// Lets the clock run on by `milliseconds` during the next turns of the event loop.
    void advance(qint64 milliseconds) { m_target += milliseconds; }
    /// Runs everything that is due, up to the end of the last advance().
    void settle();

    bool processEvents(QEventLoop::ProcessEventsFlags flags) override;
    void registerSocketNotifier(QSocketNotifier*) override {}
    void unregisterSocketNotifier(QSocketNotifier*) override {}
    void registerTimer(int id, qint64 interval, Qt::TimerType type, QObject* object) override;
    bool unregisterTimer(int id) override;
    bool unregisterTimers(QObject* object) override;
    QList<TimerInfo> registeredTimers(QObject* object) const override;
    int remainingTime(int id) override;
    void wakeUp() override {}
    void interrupt() override { m_interrupted = true; }

private:
    struct Timer
    {
        QObject* object;
        qint64 interval;
        Qt::TimerType type;
        qint64 due;
        /// Tells timers apart that are due at the same moment: the older goes first.
        quint64 turn;
        bool firing;
    };

    bool fireDueTimers();
    /// Moves the clock to the next timer or to the end of the advance; false at that end.
    bool moveOn();

    QHash<int, Timer> m_timers;
    std::function<void()> m_idle;
    qint64 m_now = 0;
    qint64 m_target = 0;
    quint64 m_turns = 0;
    bool m_interrupted = false;
};

} // namespace monkey
