#pragma once

#include "kit/table/CellParking.h"

#include <QObject>
#include <QPointer>
#include <QSize>

#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

class QTableView;
class QWidget;

namespace KZ {

class CCellButtons;
class CColumnWidgets;
class CRowStore;
class CTableModel;
class CTickBoxes;

/// The real widgets that stand over the cells of a view. A widget is made when its cell comes into
/// sight or somebody asks for it. One that was asked for, or was handed over finished, lives as
/// long as its cell; of the others only a bounded number survives out of sight, and check boxes
/// move on to other cells.
///
/// A widget out of sight stands under a hidden parent instead of being hidden itself, so that an
/// owner who hides a cell widget finds it hidden when its row comes back.
///
/// Factories, size hints and events of the widgets run the owner's code, which may do anything to
/// the table, so nothing is held across them that it could take away.
class CCellWidgetLayer : public QObject
{
    Q_OBJECT

public:
    CCellWidgetLayer(QTableView* view, CRowStore& store, const CTableModel& model, QWidget* table);
    ~CCellWidgetLayer() override;

    CTickBoxes& boxes() { return *m_boxes; }
    CColumnWidgets& columnWidgets() { return *m_columnWidgets; }

    /// Makes and places the widgets of all cells in sight and puts the others away.
    void sync();
    /// The cell's widget, made if need be; null for a cell without one.
    QWidget* widget(int row, int column);
    QWidget* existingWidget(int row, int column) const;
    /// Takes a finished widget for the cell.
    void adopt(int row, int column, QWidget* widget);
    /// Deletes the cell's widget.
    void drop(int row, int column);
    void clear();
    /// Disables the widgets out of sight as the viewport disables those in it.
    void setEnabled(bool enabled);

    /// Brings the cell's check box, if there is one, to the state of the store.
    void showTick(int row, int column);
    /// Asks the widgets in sight again how large they want to be; true when one has changed.
    bool remeasure();
    /// Width in pixels that the widgets made so far for a column need.
    int neededWidth(int column) const;
    /// Forgets all sizes and takes those of the widgets in sight anew.
    void remeasureAll();
    /// Widgets in and below the cell's widget that can take the focus.
    QList<QWidget*> focusWidgets(int row, int column) const;
    /// Row and column of the cell whose widget this is or is in, both -1 when there is none.
    std::pair<int, int> cellOfWidget(const QWidget* widget) const;

private:
    struct SCell
    {
        int row = 0;
        int column = 0;
        int alignment = 0;
        QPointer<QWidget> widget;
        QSize hint;
        /// Size that the owner gave the widget, invalid when it goes by its hint.
        QSize ownSize;
        QSize size;
        bool isTick = false;
        /// One of the column's widgets.
        bool isShared = false;
        bool isPinned = false;
        quint32 pass = 0;
    };

    class CWatch;

    SCell* find(int row, int column);
    QWidget* ensure(int row, int column);
    QWidget* makeTick(int row, int column);
    QWidget* makeWidget(int row, int column);
    void prepare(quint64 key);
    bool askForSize(quint64 key);
    void measure(SCell& cell, int leastWidth);
    void place(quint64 key);
    void putAway(quint64 key);
    void discard(QWidget* widget);
    void evictIdle();
    /// Keeps the cell's widget for other cells, when it is one that can serve them.
    bool giveBack(const SCell& cell);

    QTableView* const m_view;
    CRowStore& m_store;
    const CTableModel& m_model;
    const CCellParking m_parking;
    CCellButtons* const m_buttons;
    CTickBoxes* const m_boxes;
    const std::unique_ptr<CColumnWidgets> m_columnWidgets;
    std::unordered_map<quint64, SCell> m_cells;
    std::vector<quint64> m_inSight;
    std::vector<quint64> m_idle;
    std::vector<int> m_neededWidths;
    quint32 m_pass = 0;
    quint32 m_generation = 0;
    bool m_isSyncing = false;
};

} // namespace KZ
