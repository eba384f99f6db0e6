#pragma once

#include "backend/store/StoreOptions.h"
#include "host/options/HostOptions.h"

#include <optional>

namespace host {

/// How the store that `options` ask for is opened; without a location for the demonstration store.
/// Null, with the reason in `error`, for a location that names no store.
std::optional<backend::StoreOptions> storeOptions(const HostOptions& options, QString* error);

} // namespace host
