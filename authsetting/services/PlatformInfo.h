#pragma once

#include <QtGlobal>

#include <string>

namespace mbservice {

/// One trading platform. Strings are UTF-8; an unknown platform has an empty name.
struct CPlatformInfo
{
    qint32 platformId = 0;
    std::string name;
};

} // namespace mbservice
