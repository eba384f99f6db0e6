#pragma once

#include <QHash>
#include <QString>

#include <functional>
#include <string>
#include <vector>

class QWidget;

namespace KZ {

/// The cells of a table in the order in which its rows were added. A cell that is only a text costs
/// no more than its string: colours, ticks and widgets live in arrays that a column gets with the
/// first cell that has one. A cell has a tick, a widget of its own, one of its column's, or none.
///
/// Rows and columns out of range are ignored by the setters and read as empty.
class CRowStore
{
public:
    struct STick
    {
        int id = 0;
        int alignment = 0;
        bool present = false;
        bool checked = false;
        bool enabled = false;
    };
    struct SCellWidget
    {
        std::function<QWidget*(QWidget*)> factory;
        int alignment = 0;
        bool present = false;
    };

    CRowStore();

    int rowCount() const { return m_rowCount; }
    int columnCount() const { return m_columnCount; }
    bool contains(int row, int column) const
    {
        // A negative number becomes a large one, which spares half of the comparisons.
        return unsigned(row) < unsigned(m_rowCount) && unsigned(column) < unsigned(m_columnCount);
    }
    void setColumnCount(int count);
    void clear();
    int appendRow();

    /// What the row stands for, empty while nobody has said so.
    const QString& rowKey(int row) const;
    void setRowKey(int row, const QString& key);

    const QString& text(int row, int column) const;
    /// True when the text is another one than before.
    bool setText(int row, int column, const QString& text);

    QString colorKey(int row, int column) const;
    void setColorKey(int row, int column, const char* key);

    QString toolTip(int row, int column) const;
    void setToolTip(int row, int column, const QString& text);
    QString iconKey(int row, int column) const;
    void setIconKey(int row, int column, const QString& key);

    /// The cell's tick, null when it has none. Valid until the next row or tick is added.
    const STick* tick(int row, int column) const;
    STick* tick(int row, int column);
    void setTick(int row, int column, const STick& tick);
    /// Column of the row's first tick, -1 without one.
    int firstTickColumn(int row) const;
    /// Whether the row is ticked and free to be unticked: such a row is never hidden.
    bool isRowTicked(int row) const;

    /// The cell's own widget, null without one.
    const SCellWidget* cellWidget(int row, int column) const;
    void setCellWidget(int row, int column, SCellWidget widget);
    /// Whether one of the column's widgets stands for the cell.
    bool hasColumnWidget(int row, int column) const;
    void setColumnWidget(int row, int column);
    /// Whether the cell has a tick or a widget of either kind.
    bool isWidgetCell(int row, int column) const;
    bool columnHasWidgets(int column) const;
    /// Whether any column has, or lately had, such cells.
    bool hasTicks() const;
    bool hasWidgets() const;

    static quint64 cellKey(int row, int column)
    {
        return (quint64(quint32(row)) << 32) | quint32(column);
    }

private:
    struct SColumn
    {
        std::vector<quint16> colors;
        std::vector<STick> ticks;
        std::vector<SCellWidget> widgets;
        std::vector<quint8> columnWidgets;
    };
    size_t textIndex(int row, int column) const
    {
        return size_t(row) * size_t(m_columnCount) + size_t(column);
    }
    void clearWidget(SColumn& column, int row);
    quint16 colorIndex(const char* key);

    int m_rowCount = 0;
    int m_columnCount = 0;
    std::vector<QString> m_rowKeys;
    std::vector<QString> m_texts;
    std::vector<SColumn> m_columns;
    /// The keys of the colours in use, in both spellings; the first ones stand for no colour.
    std::vector<QString> m_colorKeys;
    std::vector<std::string> m_colorNames;
    QHash<quint64, QString> m_toolTips;
    QHash<quint64, QString> m_iconKeys;
};

} // namespace KZ
