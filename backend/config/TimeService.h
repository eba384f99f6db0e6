#pragma once

#include "authsetting/services/TimeService.h"

#include <functional>

namespace backend {

/// The client's clock: the machine's, corrected by what is known of the server's, told in the
/// exchange time zone. GUI thread only.
class SystemTimeService final : public GW::CTimeService
{
public:
    /// Milliseconds since 1970-01-01 UTC.
    using MillisecondClock = std::function<qint64()>;

    /// An empty `clock` stands for the machine's.
    explicit SystemTimeService(MillisecondClock clock = {});

    QDateTime currentDateTime() const override;

    /// Milliseconds by which the server's clock is ahead of this machine's; 0 at first.
    void setOffset(qint64 milliseconds) { m_offset = milliseconds; }
    qint64 offset() const { return m_offset; }

private:
    MillisecondClock m_clock;
    qint64 m_offset = 0;
};

} // namespace backend
