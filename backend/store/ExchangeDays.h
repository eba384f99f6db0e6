#pragma once

#include <QDate>
#include <QHash>
#include <QTimeZone>

namespace backend {

/// Turns the seconds of a grant's first and last day into calendar days of the exchange time zone
/// and back; remembers what it has seen, because a burst of grants names few days. One thread.
class ExchangeDays
{
public:
    ExchangeDays();

    /// The day in the exchange time zone on which that moment lies.
    QDate day(qint32 secondsSinceEpoch);
    /// Seconds since 1970-01-01 UTC of the day's first moment in the exchange time zone, limited
    /// to 32 bits.
    qint32 seconds(const QDate& day);

private:
    QTimeZone m_zone;
    QHash<qint32, QDate> m_days;
    QHash<QDate, qint32> m_seconds;
};

} // namespace backend
