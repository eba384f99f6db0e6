#pragma once

#include <qnamespace.h>

#include <vector>

namespace KZ {

class CRowStore;

/// Sorts row identifiers by one column: ticks by their state, numbers (also with thousands
/// separators or a percent sign) and dates by value, other texts by Chinese collation, in that
/// order. Empty cells come last in both directions; rows with equal cells keep the order of `rows`.
void sortRows(const CRowStore& store, int column, Qt::SortOrder order, std::vector<int>& rows);

} // namespace KZ
