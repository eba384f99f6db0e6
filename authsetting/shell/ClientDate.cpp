#include "authsetting/shell/ClientDate.h"

#include "authsetting/services/Services.h"
#include "authsetting/services/TimeService.h"
#include "utils/ExchangeTimeZone.h"

#include <QDateTime>

namespace GW {

QDate clientToday()
{
    if (const CTimeService* service = getTimeService())
        return service->currentDateTime().date();
    return QDateTime::currentDateTimeUtc().toTimeZone(utils::exchangeTimeZone()).date();
}

} // namespace GW
