#pragma once

namespace bench {

/// Milliseconds of one transaction that writes `rows` grants, each with its entry in the audit
/// trail, through SQLite's C interface: into a filled store of its own, so the same tables, and
/// with the store's settings of journal, sync and foreign keys.
double bareTransactionMilliseconds(int rows);

} // namespace bench
