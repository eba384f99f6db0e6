#pragma once

#include <QAbstractTableModel>
#include <QStringList>

#include <functional>
#include <limits>
#include <vector>

namespace KZ {

class CRowStore;

/// The rows of a store as the view shows them: those that have been published, in the order that
/// the user sorted and without the ones that he filtered out. "Row" is always a store's row
/// identifier, "view row" a row of this model.
class CTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// Decides about a text that the user typed; false refuses it.
    using TextHandler = std::function<bool(int row, int column, const QString& text)>;
    using TickHandler = std::function<void(int row, int column, bool checked)>;

    CTableModel(CRowStore& store, QObject* parent);

    void setHandlers(TextHandler textEdited, TickHandler tickToggled);
    void setColumns(int count);
    void setColumnEditable(int column, bool editable);
    /// Whether any column is editable.
    bool isEditable() const;
    void setInnerEnabled(bool enabled);
    bool isInnerEnabled() const { return m_innerEnabled; }
    QString headerText(int column) const { return m_headers.value(column); }
    void setHeaderText(int column, const QString& text);
    void setHeaderCentered(int column, bool centered);

    /// Empties the store and the model.
    void clearRows();
    bool hasUnpublishedRows() const;
    bool isPublished(int row) const { return row < m_published; }
    /// Takes over the rows added to the store since the last call, in one insertion.
    void publish();

    /// Row identifier at a view row, -1 out of range.
    int rowAt(int viewRow) const;
    /// Where a row is shown, -1 when it is filtered out or not published.
    int viewRowOf(int row) const;

    /// Shows only rows that contain every word of `text`, and ticked ones. Resets the model.
    void setFilter(const QString& text);
    bool isFiltered() const { return !m_words.isEmpty(); }
    int sortColumn() const { return m_sortColumn; }
    Qt::SortOrder sortOrder() const { return m_sortOrder; }
    /// Sorts by a column, or back to insertion order by -1. Texts that change later do not move
    /// their row until the next sorting.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    /// Remembers that a cell has changed, until flushChanges() tells the view about all of them.
    void cellChanged(int row, int column);
    void flushChanges();

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    bool isPermuted() const { return m_sortColumn >= 0 || isFiltered(); }
    bool isAccepted(int row) const;
    std::vector<int> acceptedRows(int first) const;
    void setOrder(std::vector<int> rows);
    void forgetChanges();
    QString accessibleText(int row, int column) const;

    CRowStore& m_store;
    TextHandler m_textEdited;
    TickHandler m_tickToggled;
    QStringList m_headers;
    std::vector<bool> m_centeredHeaders;
    std::vector<bool> m_editable;
    bool m_innerEnabled = true;

    int m_published = 0;
    QStringList m_words;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    /// Row by view row and view row by row; both unused while the order is the store's own.
    std::vector<int> m_order;
    std::vector<int> m_viewRows;

    int m_firstChangedRow = std::numeric_limits<int>::max();
    int m_lastChangedRow = -1;
    int m_firstChangedColumn = 0;
    int m_lastChangedColumn = 0;
};

} // namespace KZ
