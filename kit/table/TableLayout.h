#pragma once

#include <QString>
#include <QVector>

#include <optional>

namespace KZ {

/// A table's columns as the user arranged them, and the text in which they are kept: one line of
/// JSON that names its version.
struct STableLayout
{
    /// Columns from left to right.
    QVector<int> order;
    /// By column, in device-independent pixels.
    QVector<int> widths;
    /// Columns whose width the table may still choose by itself.
    QVector<int> automatic;
    /// -1 for insertion order.
    int sortColumn = -1;
    bool sortDescending = false;

    int columnCount() const { return int(widths.size()); }
    QString toText() const;
    /// Nothing unless the text is whole, of the known version and every number in it makes sense.
    static std::optional<STableLayout> parse(const QString& text);

    static constexpr int MIN_WIDTH = 16;
    static constexpr int MAX_WIDTH = 4000;
};

} // namespace KZ
