#pragma once

#include "backend/store/GrantRecord.h"

#include <vector>

namespace host {

/// One invented grant of the demonstration store.
struct DemoGrant
{
    /// Number of the account, whose owner is the grantor.
    const char* accountId;
    const char* grantee;
    /// First and last day, counted from the day on which the store is filled.
    int firstDay;
    int lastDay;
    backend::GrantSource source;
    backend::GrantState state;
    bool redeemed = false;
    /// Limit on the ratio of available margin in (0, 1]; 0 for none.
    double marginRatio = 0.0;

    static const std::vector<DemoGrant>& all();
};

} // namespace host
