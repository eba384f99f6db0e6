#include "backend/store/StoreOptions.h"

#include "utils/ExchangeTimeZone.h"

namespace backend {

QDateTime StoreOptions::now() const
{
    const QDateTime time = clock ? clock() : QDateTime::currentDateTimeUtc();
    return time.toTimeZone(utils::exchangeTimeZone());
}

} // namespace backend
