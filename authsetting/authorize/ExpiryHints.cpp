#include "authsetting/authorize/ExpiryHints.h"

#include "authsetting/shell/ClientDate.h"
#include "kit/dates/DateConversions.h"
#include "kit/table/OddEvenRowTable.h"

namespace GW {

CExpiryHints::CExpiryHints()
    : m_today(clientToday()),
      m_far(KZ::qDateTimeToSecond(KZ::exchangeDayStart(m_today.addDays(nearDays + 1))))
{
}

QString CExpiryHints::text(int lastDay) const
{
    // Most grants run long, and for these nothing dearer is asked.
    if (lastDay >= m_far)
        return {};
    const qint64 left = m_today.daysTo(KZ::secondToQDateTime(lastDay).date());
    if (left == 0)
        return QStringLiteral("今天到期");
    return left > 0 ? QStringLiteral("还有 %1 天到期").arg(left) : QString();
}

void CExpiryHints::mark(KZ::COddEvenRowTable* table, int row, int column, int lastDay) const
{
    const QString hint = text(lastDay);
    table->setItemToolTip(row, column, hint);
    table->setItemIconKey(row, column,
                          hint.isEmpty() ? QString() : QStringLiteral("gw_img_kit_near_expiry"));
}

void CExpiryHints::unmark(KZ::COddEvenRowTable* table, int row, int column)
{
    table->setItemToolTip(row, column, QString());
    table->setItemIconKey(row, column, QString());
}

} // namespace GW
