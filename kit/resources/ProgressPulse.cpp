#include "kit/resources/ProgressPulse.h"

#include <QElapsedTimer>
#include <QEvent>
#include <QProgressBar>
#include <QTimerEvent>

namespace KZ {

namespace {

/// Milliseconds between two pictures and for one run of the mark: smooth to the eye, slow enough
/// not to be nervous.
constexpr int FRAME_MS = 33;
constexpr int RUN_MS = 1600;

} // namespace

CProgressPulse::CProgressPulse(QProgressBar* bar) : QObject(bar), m_bar(bar)
{
    bar->installEventFilter(this);
    if (bar->isVisible())
        m_timer.start(FRAME_MS, this);
}

void CProgressPulse::attach(QProgressBar* bar)
{
    if (!bar->findChild<CProgressPulse*>(QString(), Qt::FindDirectChildrenOnly))
        new CProgressPulse(bar);
}

double CProgressPulse::phase()
{
    static const QElapsedTimer clock = [] {
        QElapsedTimer started;
        started.start();
        return started;
    }();
    return double(clock.elapsed() % RUN_MS) / RUN_MS;
}

bool CProgressPulse::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show)
        m_timer.start(FRAME_MS, this);
    else if (event->type() == QEvent::Hide)
        m_timer.stop();
    return QObject::eventFilter(watched, event);
}

void CProgressPulse::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_timer.timerId()) {
        QObject::timerEvent(event);
        return;
    }
    if (m_bar->minimum() == m_bar->maximum())
        m_bar->update();
}

} // namespace KZ
