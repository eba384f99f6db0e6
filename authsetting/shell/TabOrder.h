#pragma once

#include <QList>

class QWidget;

namespace GW {

/// The order in which Tab walks through a window: row by row as the user reads, and around.
class CTabOrder
{
public:
    CTabOrder() = delete;

    /// The visible and enabled controls below `root` that Tab stops at, in reading order. A tab
    /// page is none as long as it holds one, and neither is what stands inside a table: the table
    /// itself is, and leads to its rows.
    static QList<QWidget*> stopsOf(const QWidget* root);

    /// Moves the focus of `window` to the next or previous stop; false when it has none.
    static bool step(const QWidget* window, bool next);
};

} // namespace GW
