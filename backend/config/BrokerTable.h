#pragma once

#include "authsetting/services/BrokerInfo.h"

#include <QVector>

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>

namespace backend {

/// Brokers by platform and identifier.
class BrokerTable
{
public:
    BrokerTable() = default;
    explicit BrokerTable(const QVector<mbservice::CBrokerInfo>& brokers);

    /// The broker; a record of the asked identifiers with an empty name when unknown.
    mbservice::CBrokerInfo broker(int platformId, const std::string& brokerId) const;

private:
    using Key = std::pair<int, std::string>;
    struct KeyHash
    {
        std::size_t operator()(const Key& key) const;
    };

    std::unordered_map<Key, std::string, KeyHash> m_names;
};

} // namespace backend
