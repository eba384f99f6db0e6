#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace bench {

/// Longest time that the event loop did not turn while the meter lives, a millisecond too long at
/// most.
class StallMeter : public QObject
{
public:
    StallMeter();

    double longestMilliseconds() const;

private:
    void tick();

    QElapsedTimer m_sinceLast;
    QTimer m_timer;
    qint64 m_longest = 0;
};

} // namespace bench
