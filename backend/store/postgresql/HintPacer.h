#pragma once

#include <chrono>
#include <functional>
#include <optional>

namespace backend {

/// When to read because of hints that something changed, which every login may send, as many as it
/// likes. The first hint after quiet is worth a read at once. Those that follow are answered by one
/// read at the end of an interval, which is short after a read that found a change and grows with
/// each that found none. No hint is forgotten before a read begins. One thread.
class HintPacer
{
public:
    using Milliseconds = std::chrono::milliseconds;
    /// The time that has passed since some moment.
    using Clock = std::function<Milliseconds()>;

    /// After a read that found a change: too short to be noticed at the other desk.
    static constexpr Milliseconds busyInterval{50};
    /// After the first read in vain; it doubles up to the longest.
    static constexpr Milliseconds firstInterval{200};
    static constexpr Milliseconds longestInterval{1000};
    /// After which it is as if there had never been a hint.
    static constexpr Milliseconds quiet{5000};

    /// On the machine's monotonic clock.
    HintPacer();
    explicit HintPacer(Clock clock);

    /// Somebody hinted.
    void note();
    /// How long to wait with the read that hints ask for; nothing when none does.
    std::optional<Milliseconds> wait() const;
    bool isDue() const { return wait() == Milliseconds(0); }
    /// A read begins, for whatever reason, which answers all hints so far.
    void beginRead();
    /// A read that only hints caused has ended.
    void endRead(bool foundChange);

private:
    Clock m_clock;
    bool m_isHinted = false;
    /// When the last read ended that only hints caused.
    std::optional<Milliseconds> m_lastRead;
    Milliseconds m_interval{0};
};

} // namespace backend
