#pragma once

#include "backend/store/StoreLocation.h"

#include <QString>

namespace backend {

/// Reads postgresql://[user@]host[:port]/database[?sslmode=…&sslrootcert=…]. A password is refused,
/// because a command line and its history are for everybody to read. Invalid on failure, with the
/// reason in Chinese in `error` (may be null).
StoreLocation parseServerUrl(const QString& text, QString* error);

} // namespace backend
