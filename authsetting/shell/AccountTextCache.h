#pragma once

#include "authsetting/shell/AccountTexts.h"

#include <QString>

#include <array>
#include <string>

namespace GW {

/// The texts of AccountTexts.h for all rows of one reload: each is asked for once and then shared
/// by the rows that show it; where very many differ, some are asked for again. Make one at the
/// start of a reload and drop it at the end, because the services may name things anew.
class CAccountTextCache
{
public:
    explicit CAccountTextCache(StockRule rule) : m_rule(rule) {}

    const QString& platformName(const mbservice::CAccountInfo& account);
    const QString& brokerName(const mbservice::CAccountInfo& account);
    const QString& grantDayText(int seconds);

private:
    // Rows look their texts up by the million, so a key has one place only and a later key takes
    // it over.
    static constexpr std::size_t places = 256;

    struct Platform
    {
        bool known = false;
        bool isStock = false;
        int id = 0;
        QString name;
    };
    struct Broker
    {
        bool known = false;
        bool isStock = false;
        int platformId = 0;
        std::string id;
        QString name;
    };
    struct Day
    {
        bool known = false;
        int seconds = 0;
        QString text;
    };

    const StockRule m_rule;
    std::array<Platform, places> m_platforms;
    std::array<Broker, places> m_brokers;
    std::array<Day, places> m_days;
};

} // namespace GW
