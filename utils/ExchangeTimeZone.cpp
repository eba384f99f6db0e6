#include "utils/ExchangeTimeZone.h"

#include <QMutex>
#include <QMutexLocker>

namespace utils {

namespace {

QMutex zoneMutex;

QTimeZone& currentZone()
{
    static QTimeZone zone("Asia/Shanghai");
    return zone;
}

} // namespace

QTimeZone exchangeTimeZone()
{
    const QMutexLocker lock(&zoneMutex);
    return currentZone();
}

bool setExchangeTimeZone(const QTimeZone& zone)
{
    if (!zone.isValid())
        return false;
    const QMutexLocker lock(&zoneMutex);
    currentZone() = zone;
    return true;
}

} // namespace utils
