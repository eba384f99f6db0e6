#pragma once

#include "backend/client/ClientResult.h"
#include "backend/client/UserSnapshot.h"

#include <QVector>

#include <optional>

namespace backend {

/// What the worker has committed and the GUI thread is to hear of: first the new state, then the
/// results, then that something changed.
struct Delivery
{
    /// The user's data when it changed.
    std::optional<UserSnapshot> snapshot;
    /// Growing by delivery, so that an older state never replaces a newer one.
    quint64 number = 0;
    QVector<ClientResult> results;
};

} // namespace backend
