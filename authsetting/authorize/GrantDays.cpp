#include "authsetting/authorize/GrantDays.h"

#include "authsetting/shell/ClientDate.h"
#include "kit/dates/DateConversions.h"
#include "kit/dates/SoftCalendarLineEdit.h"

namespace GW {

CGrantDays::CGrantDays(KZ::CSoftCalendarLineEdit* first, KZ::CSoftCalendarLineEdit* last)
    : m_first(first), m_last(last)
{
    m_first->setTodaySource(&clientToday);
    m_last->setTodaySource(&clientToday);
}

void CGrantDays::startToday()
{
    const QDate today = clientToday();
    m_first->setMinimumDate(today);
    m_last->setMinimumDate(today);
}

void CGrantDays::propose()
{
    show(proposal());
}

void CGrantDays::show(const CAuthLimit& limit)
{
    m_first->setDateTime(KZ::secondToQDateTime(limit.startTime));
    m_last->setDateTime(KZ::secondToQDateTime(limit.endTime));
}

CAuthLimit CGrantDays::limit() const
{
    CAuthLimit limit;
    limit.startTime = KZ::qDateTimeToSecond(m_first->dateTime());
    limit.endTime = KZ::qDateTimeToSecond(m_last->dateTime());
    return limit;
}

qint64 CGrantDays::count() const
{
    return m_first->date().daysTo(m_last->date()) + 1;
}

QString CGrantDays::hint() const
{
    const qint64 days = count();
    if (days == 1)
        return QStringLiteral("授权日期为1天");
    return days < 1 ? QStringLiteral("授权开始时间晚于结束时间") : QString();
}

CAuthLimit CGrantDays::proposal()
{
    constexpr int week = 7;
    const QDate today = clientToday();
    CAuthLimit limit;
    limit.startTime = KZ::qDateTimeToSecond(KZ::exchangeDayStart(today));
    limit.endTime = KZ::qDateTimeToSecond(KZ::exchangeDayStart(today.addDays(week)));
    return limit;
}

} // namespace GW
