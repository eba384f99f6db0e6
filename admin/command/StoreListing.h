#pragma once

#include "backend/store/StoreAdmin.h"

#include <QString>
#include <QStringList>

namespace admin {

/// What `store` has of "users", "accounts" or "grants", as lines of a CSV file with a header; never
/// a password or an account's secret.
QStringList listing(const QString& what, const backend::StoreAdmin& store);

} // namespace admin
