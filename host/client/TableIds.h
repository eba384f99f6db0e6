#pragma once

namespace host {

/// Identifiers of the client's own tables, clear of those of the dialog's.
enum TableId : int {
    TABLE_CLIENT_ACCOUNTS = 8388609,
    TABLE_CLIENT_MESSAGES = 8388610,
    TABLE_CLIENT_AUDIT = 8388611,
};

} // namespace host
