#pragma once

#include "backend/client/ClientResult.h"
#include "backend/client/UserSnapshot.h"

namespace backend {

/// Where a ResultOutbox delivers to. Each function may end the sink's life.
class ResultSink
{
public:
    virtual void takeSnapshot(const UserSnapshot& snapshot, quint64 number) = 0;
    virtual void emitResult(const ClientResult& result) = 0;
    virtual void emitChanged() = 0;

protected:
    ~ResultSink() = default;
};

} // namespace backend
