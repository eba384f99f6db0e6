#pragma once

#include "backend/store/StoreRequest.h"

#include <QVariant>

namespace backend {

/// A request on its way to the store, with the tag of the page that sent it.
struct ClientRequest
{
    StoreRequest request;
    QVariant tag;
};

} // namespace backend
