#pragma once

#include <QString>

namespace bench {

/// Milliseconds of one transaction that writes `rows` grants, each with its entry in the audit
/// trail, into tables and indexes like the store's own, through SQLite's C interface with the
/// store's journal and sync settings. Makes a database of its own in `folder`.
double bareTransactionMilliseconds(const QString& folder, int rows);

} // namespace bench
