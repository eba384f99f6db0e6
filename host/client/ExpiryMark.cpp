#include "host/client/ExpiryMark.h"

namespace host {

ExpiryMark ExpiryMark::forGrant(const QDate& first, const QDate& last, const QDate& today)
{
    const qint64 daysLeft = today.daysTo(last);
    if (daysLeft < 0)
        return {QStringLiteral("已到期"), QStringLiteral("gw_img_kit_info"), "clr_text_quiet",
                false};
    if (daysLeft <= nearDays) {
        const QString text = daysLeft == 0 ? QStringLiteral("今天到期")
                                           : QStringLiteral("还有 %1 天到期").arg(daysLeft);
        return {text, QStringLiteral("gw_img_kit_near_expiry"), "clr_warning", true};
    }
    if (first > today)
        return {QStringLiteral("尚未开始"), QStringLiteral("gw_img_kit_calendar"), "clr_text_quiet",
                false};
    return {};
}

} // namespace host
