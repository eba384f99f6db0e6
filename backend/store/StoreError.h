#pragma once

#include "backend/store/StoreFailure.h"

#include <exception>
#include <utility>

namespace backend {

/// Carries a failure of the engine up to the store's entry points, which turn it into a result;
/// it never leaves backend/store.
class StoreError : public std::exception
{
public:
    explicit StoreError(StoreFailure failure) : m_failure(std::move(failure)) {}
    const StoreFailure& failure() const { return m_failure; }
    const char* what() const noexcept override { return "store failure"; }

private:
    StoreFailure m_failure;
};

} // namespace backend
