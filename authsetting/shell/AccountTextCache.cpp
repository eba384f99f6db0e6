#include "authsetting/shell/AccountTextCache.h"

namespace GW {

namespace {

constexpr int secondsPerDay = 86400;

/// A place among 256 for a number; neighbours spread well (Fibonacci hashing).
std::size_t placeOf(unsigned number)
{
    constexpr unsigned goldenRatio = 2654435769u;
    return (number * goldenRatio) >> 24;
}

unsigned numberOf(const std::string& text, unsigned seed)
{
    constexpr unsigned factor = 257;
    for (const char byte : text)
        seed = seed * factor + static_cast<unsigned char>(byte);
    return seed;
}

} // namespace

const QString& CAccountTextCache::platformName(const mbservice::CAccountInfo& account)
{
    const bool isStock = isStockAccount(account, m_rule);
    const unsigned number = 2 * static_cast<unsigned>(account.platformId) + isStock;
    Platform& place = m_platforms[placeOf(number)];
    if (!place.known || place.isStock != isStock || place.id != account.platformId)
        place = {true, isStock, account.platformId, GW::platformName(account, m_rule)};
    return place.name;
}

const QString& CAccountTextCache::brokerName(const mbservice::CAccountInfo& account)
{
    const bool isStock = isStockAccount(account, m_rule);
    const unsigned number = 2 * static_cast<unsigned>(account.platformId) + isStock;
    Broker& place = m_brokers[placeOf(numberOf(account.brokerId, number))];
    if (!place.known || place.isStock != isStock || place.platformId != account.platformId ||
        place.id != account.brokerId)
        place = {true, isStock, account.platformId, account.brokerId,
                 GW::brokerName(account, m_rule)};
    return place.name;
}

const QString& CAccountTextCache::grantDayText(int seconds)
{
    const auto day = static_cast<unsigned>(seconds) / secondsPerDay;
    Day& place = m_days[placeOf(day)];
    if (!place.known || place.seconds != seconds)
        place = {true, seconds, GW::grantDayText(seconds)};
    return place.text;
}

} // namespace GW
