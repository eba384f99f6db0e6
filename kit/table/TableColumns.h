#pragma once

#include "kit/table/TableLayout.h"

#include <QHash>
#include <QObject>
#include <QString>

#include <optional>
#include <vector>

class QHeaderView;

namespace KZ {

class CTableDelegate;
class CTableModel;
class CTableView;
class CRowStore;

/// Widths, order and sorting of a table's columns. A column has a fixed width once the program or
/// the user has given it one; the others fit themselves to header and texts and share what room the
/// view has. The first resizing by the user fixes all of them.
class CTableColumns : public QObject
{
    Q_OBJECT

public:
    CTableColumns(CTableView* view, CTableModel& model, const CRowStore& store,
                  const CTableDelegate& delegate);

    /// To be called after the model has got another number of columns.
    void columnsChanged();
    void setWidth(int column, int px);
    int width(int column) const;
    /// Looks at the texts of the first rows. Columns only grow by it, so a reload does not shake.
    void measureTexts();
    /// Width that the widgets of a column need.
    void setWidgetWidth(int column, int px);
    /// Distributes the view's width among the columns that are not fixed.
    void fit();
    /// Back to the program's order and widths, and to insertion order of the rows.
    void reset();
    /// Measures everything again, for another font or theme.
    void remeasure();

    QString save() const;
    void load(const QString& text);

private:
    struct SColumn
    {
        /// Set by the program, 0 when it leaves the width to the table.
        int programWidth = 0;
        /// In force, by program, user or a loaded layout; 0 while the column fits itself.
        int fixedWidth = 0;
        int textWidth = 0;
        int widgetWidth = 0;
        /// Texts that are known to fit, with the room around them that was counted.
        QHash<QString, int> measured;
    };

    QHeaderView* header() const;
    bool isColumn(int column) const { return column >= 0 && column < int(m_columns.size()); }
    int headerTextWidth(int column) const;
    int leastWidth(int column) const;
    int naturalWidth(int column) const;
    void apply(const STableLayout& layout);
    void resize(int column, int px);
    void userResized();

    CTableView* const m_view;
    CTableModel& m_model;
    const CRowStore& m_store;
    const CTableDelegate& m_delegate;
    std::vector<SColumn> m_columns;
    /// A layout that was loaded before the table had its columns.
    std::optional<STableLayout> m_early;
    /// Whether such a layout is in force, which the program's first widths must not undo.
    bool m_isEarlyInForce = false;
    bool m_isResizing = false;
};

} // namespace KZ
