#pragma once

namespace admin {

/// What the records of a file describe.
enum class RecordKind { Users, SubUsers, Accounts, SubAccounts, Platforms, Brokers };

} // namespace admin
