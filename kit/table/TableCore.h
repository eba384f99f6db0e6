#pragma once

#include "kit/table/OddEvenRowTable.h"
#include "kit/table/RowStore.h"
#include "kit/table/TableModel.h"
#include "kit/table/TableViewClient.h"

#include <QObject>

#include <memory>

namespace KZ {

class CCellControls;
class CCellWidgetLayer;
class CTableColumns;
class CTableDelegate;
class CTableFilterBar;
class CTableInput;
class CTableSelection;
class CTableView;

/// The inside of a COddEvenRowTable: it holds the parts together and decides when the view learns
/// what the program did. Everything the program does between two turns of the event loop reaches
/// the view in one step (flush()), which a posted event brings about, or a paint, or somebody who
/// needs the view.
class CTableCore final : public QObject, public ITableViewClient
{
    Q_OBJECT

public:
    CTableCore(COddEvenRowTable* table, int id, int menuFlags);
    ~CTableCore() override;

    int id() const { return m_id; }
    CRowStore& store() { return m_store; }
    const CRowStore& store() const { return m_store; }
    CTableModel& model() { return *m_model; }
    CTableView* view() const { return m_view; }
    CTableColumns& columns() { return *m_columns; }
    CCellWidgetLayer& layer() { return *m_layer; }
    COddEvenRowTable* table() const { return m_table; }
    CTableFilterBar* filterBar() const { return m_filterBar; }
    CTableInput& input() const { return *m_input; }

    /// Lays out view and filter bar in the table.
    void place();
    void updateResources();
    /// The cell's widgets that can take the focus now.
    QList<QWidget*> focusWidgets(int row, int column);
    /// The view, which has the focus, goes by the table's name.
    void updateAccessibleName();
    void setFlag(int flags);
    void setColumnCount(int count);
    void setInnerEnabled(bool enabled);

    void clearRows();
    int appendRow();
    void cellChanged(int row, int column)
    {
        // The rows that wait to be published are all told to the view at once.
        if (m_model->isPublished(row))
            publishedCellChanged(row, column);
    }
    void setTick(int row, int column, const CRowStore::STick& tick);
    void setWidget(int row, int column, QWidget* widget, int alignment);
    void setFactory(int row, int column, CRowStore::SCellWidget source);
    void setColumnWidget(int row, int column);
    QWidget* widget(int row, int column);
    /// A tick set by the program.
    void setChecked(int row, int column, bool checked)
    {
        changeTick(row, column, &CRowStore::STick::checked, checked);
    }
    void setCheckEnabled(int row, int column, bool enabled)
    {
        changeTick(row, column, &CRowStore::STick::enabled, enabled);
    }
    /// A tick set by the user otherwise than by a click on its check box; delivers the event.
    void toggleByUser(int row, int column, bool checked);
    /// Counts how often the rows were cleared; tells a loop that its rows are gone.
    quint32 generation() const { return m_generation; }

    /// The selection, with all rows published.
    CTableSelection& selection();
    void setFilter(const QString& text);

    /// Tells the view about all rows and changes; runs no code of the table's owner.
    void publish();
    /// Brings view and cell widgets up to date.
    void flush(bool painting = false);

    void aboutToPaint() override { flush(true); }
    void cellsMoved() override;
    void cellWidgetResized() override;
    void viewResized() override;
    void userActionBegun() override;
    void userActionEnded() override;
    bool keyPressed(QKeyEvent& event) override;
    void textComposed(QInputMethodEvent& event) override;
    void contextMenuAsked(const QPoint& globalPos, int column) override;
    bool needsEscape() const override;
    CCellControls& cellControls() override { return *m_controls; }
    int cellWidgetWidth(int column) const override;

protected:
    bool event(QEvent* event) override;

private:
    void publishedCellChanged(int row, int column);
    void cellReplaced(int row, int column);
    void scheduleFlush();
    void refilter();
    void revealIfTicked(int row);
    void changeTick(int row, int column, bool CRowStore::STick::*state, bool value);
    bool textEdited(int row, int column, const QString& text);
    void updateWidgetWidths();

    COddEvenRowTable* const m_table;
    const int m_id;
    QString m_filter;
    quint32 m_generation = 0;
    bool m_flushPosted = false;
    bool m_isPublishing = false;
    bool m_isFlushing = false;
    bool m_widgetsStale = true;
    bool m_revealPending = false;
    // The parts come last, because the view calls this object while it is being made.
    CRowStore m_store;
    CTableModel* m_model;
    CTableView* m_view;
    CTableDelegate* m_delegate;
    CCellWidgetLayer* m_layer;
    const std::unique_ptr<CCellControls> m_controls;
    CTableColumns* m_columns;
    CTableFilterBar* m_filterBar;
    CTableSelection* m_selection;
    CTableInput* m_input;
};

} // namespace KZ
