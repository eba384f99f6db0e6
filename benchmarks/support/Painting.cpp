#include "benchmarks/support/Painting.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QtDebug>

namespace bench {

namespace {

class PaintWatcher : public QObject
{
public:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            painted = true;
        return false;
    }

    bool painted = false;
};

double milliseconds(const QElapsedTimer& timer)
{
    constexpr double nanosecondsPerMillisecond = 1e6;
    return static_cast<double>(timer.nsecsElapsed()) / nanosecondsPerMillisecond;
}

} // namespace

double millisecondsUntilPainted(QWidget* painted, const std::function<void()>& action)
{
    constexpr double patience = 120000;
    PaintWatcher watcher;
    painted->installEventFilter(&watcher);
    QElapsedTimer timer;
    timer.start();
    action();
    while (!watcher.painted) {
        QCoreApplication::processEvents();
        if (milliseconds(timer) > patience)
            qFatal("nothing was painted");
    }
    // Without a loop around it nothing else removes what was left for later deletion.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return milliseconds(timer);
}

void settle()
{
    constexpr int quietMilliseconds = 30;
    QElapsedTimer quiet;
    quiet.start();
    while (quiet.elapsed() < quietMilliseconds)
        QCoreApplication::processEvents(QEventLoop::AllEvents, quietMilliseconds);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace bench
