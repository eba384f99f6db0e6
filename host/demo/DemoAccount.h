#pragma once

#include "authsetting/services/AccountInfo.h"

#include <string>
#include <vector>

namespace host {

/// One invented account of the demonstration store. Texts are UTF-8.
struct DemoAccount
{
    const char* owner;
    /// 1 = futures, 2 = stock.
    int accountType;
    int platformId;
    const char* brokerId;
    /// Unique among the invented accounts.
    const char* accountId;
    /// Empty when the account goes by its number.
    const char* alias;
    /// Number of the account of which this one is a sub-account, null for none.
    const char* parentId;

    mbservice::CAccountInfo info() const;

    static const std::vector<DemoAccount>& all();
    /// Null for a number that no account has.
    static const DemoAccount* find(const std::string& accountId);
};

} // namespace host
