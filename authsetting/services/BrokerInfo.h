#pragma once

#include <QtGlobal>

#include <string>

namespace mbservice {

/// One broker on one platform. Strings are UTF-8; an unknown broker has an empty name.
struct CBrokerInfo
{
    qint32 platformId = 0;
    std::string brokerId;
    std::string name;
};

} // namespace mbservice
