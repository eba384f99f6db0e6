#pragma once

#include "backend/store/ExchangeDays.h"
#include "backend/store/ModelEditor.h"
#include "backend/store/StoreReply.h"
#include "backend/store/StoreRequest.h"

#include <QVector>

#include <optional>

namespace backend {

/// Carries out in `model` what the server's replies say of the sender's own requests, which is much
/// cheaper than reading the changed rows back. Nothing else may have changed in between. Empty, and
/// the model as it was, when the replies do not tell enough.
std::optional<ModelChanges> applyReplies(const QVector<StoreRequest>& requests,
                                         const QVector<StoreReply>& replies, ExchangeDays& days,
                                         UserModel& model);

} // namespace backend
