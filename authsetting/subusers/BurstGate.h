#pragma once

#include <QTimer>

#include <functional>

namespace GW {

/// Lets a costly action that leaves the same behind however often it runs follow every request
/// literally in small numbers, and bounds its cost in large ones.
///
/// The first requests of a burst run the action at once. Further ones are merged into one run
/// shortly after, so that thousands of results do not each cost a walk over thousands of rows. A
/// burst ends when nothing was requested for a moment. GUI thread only.
class CBurstGate
{
public:
    /// Milliseconds until merged requests run, and of quiet that end a burst.
    static constexpr int quietMs = 200;

    explicit CBurstGate(std::function<void()> action);

    /// Runs the action now (true) or, when `runsAtOnce` requests of this burst have run already,
    /// leaves it to the merged run (false).
    bool request(int runsAtOnce);

    /// Forgets merged requests and ends the burst.
    void reset();

private:
    void onQuiet();

    const std::function<void()> m_action;
    QTimer m_timer;
    int m_runs = 0;
    bool m_merged = false;
};

} // namespace GW
