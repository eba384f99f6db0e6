#include "backend/config/BrokerTable.h"

#include <boost/functional/hash.hpp>

namespace backend {

BrokerTable::BrokerTable(const QVector<mbservice::CBrokerInfo>& brokers)
{
    m_names.reserve(static_cast<std::size_t>(brokers.size()));
    for (const mbservice::CBrokerInfo& broker : brokers)
        m_names.insert_or_assign(Key(broker.platformId, broker.brokerId), broker.name);
}

mbservice::CBrokerInfo BrokerTable::broker(int platformId, const std::string& brokerId) const
{
    const auto found = m_names.find(Key(platformId, brokerId));
    return {platformId, brokerId, found == m_names.end() ? std::string() : found->second};
}

std::size_t BrokerTable::KeyHash::operator()(const Key& key) const
{
    return boost::hash<Key>()(key);
}

} // namespace backend
