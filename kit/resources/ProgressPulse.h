#pragma once

#include <QBasicTimer>
#include <QObject>

class QProgressBar;

namespace KZ {

/// Repaints an indeterminate progress bar as long as it is visible, so that its mark moves.
/// A child of its bar.
class CProgressPulse : public QObject
{
    Q_OBJECT

public:
    /// Gives `bar` a pulse unless it has one.
    static void attach(QProgressBar* bar);

    /// Place of the moving mark at this moment, from 0 to 1.
    static double phase();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    explicit CProgressPulse(QProgressBar* bar);

    QProgressBar* m_bar;
    QBasicTimer m_timer;
};

} // namespace KZ
