#pragma once

#include <QString>

namespace backend {

/// One user of a store, as its administrator sees him. A value.
struct AdminUser
{
    QString name;
    /// Who manages him; empty for an ordinary user.
    QString owner;
    bool enabled = true;
};

} // namespace backend
