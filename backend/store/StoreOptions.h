#pragma once

#include "backend/store/StoreLocation.h"

#include <QDateTime>

#include <functional>

namespace backend {

/// How a store is opened and watched.
struct StoreOptions
{
    StoreLocation location;
    /// The clock that decides on "today" and stamps the audit trail, called from any thread; the
    /// machine's clock when empty.
    std::function<QDateTime()> clock;
    /// Milliseconds between two looks for changes made by other processes.
    int pollIntervalMs = 500;
    /// Milliseconds that a request waits for a store that another process has locked.
    int busyTimeoutMs = 5000;
    /// The digest with which `location.user` proves himself to a server, kept for reconnecting;
    /// signing in sets it. Empty leaves that to libpq (password file, peer authentication).
    QString credential;
    /// Folder for what the client itself keeps of its users; beside an embedded store when empty.
    QString dataFolder;
    /// Makes password hashing and sealing fast and worthless; never set outside tests.
    bool cheapCryptographyForTests = false;

    /// The clock's time in the exchange time zone.
    QDateTime now() const;
};

} // namespace backend
