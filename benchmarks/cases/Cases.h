#pragma once

#include "benchmarks/support/Results.h"

namespace bench {

/// The tables of the pages against the same rows in tables of Qt's own.
void measureOverview(const Scale& scale, Results* results);
void measureBatchTab(const Scale& scale, Results* results);
void measurePlainTable(const Scale& scale, Results* results);
void measureGrowth(const Scale& scale, Results* results);
/// Reloads "overview" or "batch" `rounds` times and measures nothing: a profiler does.
void reloadRepeatedly(const QString& page, const Scale& scale);
/// The tree against a QTreeWidget filled in bulk, and the dialog with ten times the accounts.
void measureTree(const Scale& scale, Results* results);
void measureLargeOpen(const Scale& scale, Results* results);
/// The same for the tree.
void reloadTreeRepeatedly(const Scale& scale);
/// Each side in a process of its own, started with `--memory-of`, so that neither finds memory that
/// the other has freed.
void measureMemory(const Scale& scale, Results* results);
/// What such a process does: fills the `side` "page" or "bare" and returns the bytes it added.
double addedBytes(const QString& side, int accounts);
void measureScrolling(const Scale& scale, Results* results);
void measurePendingRefresh(const Scale& scale, Results* results);
/// Grants on the embedded store, refused grants and sealed files.
void measureBatchGrants(const Scale& scale, Results* results);
void measureRefusedGrants(const Scale& scale, Results* results);
void measureFileExport(const Scale& scale, Results* results);
/// Grants on a server against bare COPY, and the way of a grant from one desk to another.
void measureServerGrants(const Scale& scale, Results* results);
void measureDeskToDesk(const Scale& scale, Results* results);
/// The dialog's first opening and the sub-user pages.
void measureFirstOpen(const Scale& scale, Results* results);
void measureSubUsers(const Scale& scale, Results* results);

} // namespace bench
