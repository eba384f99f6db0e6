#include "kit/table/CellWidgetLayer.h"

#include "kit/resources/UiResource.h"
#include "kit/table/CellWidgetTools.h"
#include "kit/table/ColumnWidgets.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/table/RowStore.h"
#include "kit/table/TableModel.h"
#include "kit/table/TickBoxes.h"
#include "kit/widgets/CheckBox.h"

#include <QApplication>
#include <QScopedValueRollback>
#include <QStyle>
#include <QTableView>

#include <algorithm>

namespace KZ {

namespace {

/// Widgets kept out of sight for scrolling back: about three pages of one column.
constexpr size_t MOST_IDLE = 96;

} // namespace

CCellWidgetLayer::CCellWidgetLayer(QTableView* view, CRowStore& store, const CTableModel& model,
                                   QWidget* table)
    : QObject(view), m_view(view), m_store(store), m_model(model), m_parking(new QWidget(table)),
      m_boxes(new CTickBoxes(store, model, view->viewport())),
      m_columnWidgets(std::make_unique<CColumnWidgets>())
{
    m_parking->hide();
}

CCellWidgetLayer::~CCellWidgetLayer() = default;

CCellWidgetLayer::SCell* CCellWidgetLayer::find(int row, int column)
{
    const auto found = m_cells.find(CRowStore::cellKey(row, column));
    return found == m_cells.end() ? nullptr : &found->second;
}

QWidget* CCellWidgetLayer::existingWidget(int row, int column) const
{
    const auto found = m_cells.find(CRowStore::cellKey(row, column));
    return found == m_cells.end() ? nullptr : found->second.widget.data();
}

QWidget* CCellWidgetLayer::widget(int row, int column)
{
    SCell* const cell = ensure(row, column);
    if (!cell || !cell->widget)
        return nullptr;
    // One that is not in its place would show up in a corner as soon as the viewport is shown.
    if (cell->pass != m_pass || m_pass == 0)
        park(cell->widget);
    if (!cell->isPinned) {
        cell->isPinned = true;
        std::erase(m_idle, CRowStore::cellKey(row, column));
    }
    return cell->widget;
}

void CCellWidgetLayer::adopt(int row, int column, QWidget* widget)
{
    drop(row, column);
    SCell& cell = m_cells[CRowStore::cellKey(row, column)];
    cell.row = row;
    cell.column = column;
    cell.widget = widget;
    cell.isPinned = true;
    if (auto* const box = qobject_cast<CCheckBox*>(widget); box && m_store.tick(row, column)) {
        cell.isTick = true;
        m_boxes->bind(box, row, column, true);
    }
    park(widget);
    prepare(cell);
}

void CCellWidgetLayer::drop(int row, int column)
{
    if (m_cells.empty())
        return;
    const quint64 key = CRowStore::cellKey(row, column);
    const auto found = m_cells.find(key);
    if (found == m_cells.end())
        return;
    discard(found->second.widget);
    m_cells.erase(found);
    std::erase(m_inSight, key);
    std::erase(m_idle, key);
}

void CCellWidgetLayer::setEnabled(bool enabled)
{
    m_parking->setEnabled(enabled);
}

void CCellWidgetLayer::clear()
{
    ++m_generation;
    for (auto& [key, cell] : m_cells) {
        if (!giveBack(cell))
            discard(cell.widget);
    }
    m_cells.clear();
    m_inSight.clear();
    m_idle.clear();
}

/// Deletes later, because the widget may be the one whose event is being handled.
void CCellWidgetLayer::discard(QWidget* widget)
{
    if (!widget)
        return;
    m_boxes->release(widget);
    if (const QWidget* const focus = QApplication::focusWidget();
        focus && (focus == widget || widget->isAncestorOf(focus)))
        m_view->setFocus(Qt::OtherFocusReason);
    widget->hide();
    widget->deleteLater();
}

void CCellWidgetLayer::park(QWidget* widget)
{
    if (widget->parentWidget() == m_parking)
        return;
    if (const QWidget* const focus = QApplication::focusWidget();
        focus && (focus == widget || widget->isAncestorOf(focus)))
        m_view->setFocus(Qt::OtherFocusReason);
    widget->setParent(m_parking);
}

CCellWidgetLayer::SCell* CCellWidgetLayer::ensure(int row, int column)
{
    SCell* const cell = find(row, column);
    if (cell && (cell->widget || !cell->isTick))
        return cell;
    if (m_store.tick(row, column))
        return makeTick(row, column);
    return m_store.isWidgetCell(row, column) ? makeWidget(row, column) : nullptr;
}

CCellWidgetLayer::SCell* CCellWidgetLayer::makeWidget(int row, int column)
{
    const bool isShared = m_store.hasColumnWidget(row, column);
    const auto factory = isShared ? nullptr : m_store.cellWidget(row, column)->factory;
    const quint32 generation = m_generation;
    QPointer<QWidget> made;
    if (isShared)
        made = m_columnWidgets->take(row, column, m_view->viewport());
    else if (factory)
        made = factory(m_view->viewport());
    // The factory is the owner's code: it may have emptied the table or filled this very cell.
    SCell* const present = find(row, column);
    if (generation != m_generation || present) {
        discard(made);
        return generation == m_generation ? present : nullptr;
    }
    SCell& cell = m_cells[CRowStore::cellKey(row, column)];
    cell.row = row;
    cell.column = column;
    cell.widget = made;
    cell.isShared = isShared;
    prepare(cell);
    return &cell;
}

CCellWidgetLayer::SCell* CCellWidgetLayer::makeTick(int row, int column)
{
    CCheckBox* const box = m_boxes->take();
    SCell& cell = m_cells[CRowStore::cellKey(row, column)];
    cell.row = row;
    cell.column = column;
    cell.isTick = true;
    cell.widget = box;
    m_boxes->bind(box, row, column, false);
    prepare(cell);
    return &cell;
}

bool CCellWidgetLayer::giveBack(const SCell& cell)
{
    if (cell.isPinned || !cell.widget)
        return false;
    if (cell.isShared)
        return !isHiddenByOwner(cell.widget) && m_columnWidgets->giveBack(cell.column, cell.widget);
    auto* const box = cell.isTick ? qobject_cast<CCheckBox*>(cell.widget.data()) : nullptr;
    if (box)
        m_boxes->giveBack(box);
    return box != nullptr;
}

/// First contact with a cell's widget.
void CCellWidgetLayer::prepare(SCell& cell)
{
    if (!cell.widget)
        return;
    if (cell.isTick) {
        cell.alignment = m_store.tick(cell.row, cell.column)->alignment;
    } else {
        cell.alignment = cell.isShared ? m_columnWidgets->alignment(cell.column)
                                       : m_store.cellWidget(cell.row, cell.column)->alignment;
        takeFromTabChain(cell.widget);
    }
    if (!cell.isTick && cell.widget->testAttribute(Qt::WA_Resized))
        cell.ownSize = cell.widget->size();
    cell.hint = cell.widget->sizeHint();
    measure(cell);
}

void CCellWidgetLayer::measure(SCell& cell)
{
    const QWidget* const widget = cell.widget;
    const QSize wanted = cell.ownSize.isValid() ? cell.ownSize : cell.hint;
    cell.size = wanted.expandedTo(widget->minimumSize()).boundedTo(widget->maximumSize());
    const int padding = CUiResource::getSize(QStringLiteral("gw_siz_kit_table_cell_padding"));
    const int needed = cell.alignment == COddEvenRowTable::ALIGN_FILL
                           ? widget->minimumSizeHint().width()
                           : cell.size.width() + 2 * padding;
    if (size_t(cell.column) >= m_neededWidths.size())
        m_neededWidths.resize(size_t(cell.column) + 1);
    int& width = m_neededWidths[size_t(cell.column)];
    width = std::max(width, needed);
}

bool CCellWidgetLayer::remeasure()
{
    bool changed = false;
    for (const quint64 key : m_inSight) {
        const auto found = m_cells.find(key);
        if (found == m_cells.end() || !found->second.widget)
            continue;
        SCell& cell = found->second;
        const QSize hint = cell.widget->sizeHint();
        if (hint == cell.hint)
            continue;
        cell.hint = hint;
        cell.ownSize = QSize();
        measure(cell);
        changed = true;
    }
    return changed;
}

void CCellWidgetLayer::remeasureAll()
{
    m_neededWidths.clear();
    for (const quint64 key : m_inSight) {
        const auto found = m_cells.find(key);
        if (found == m_cells.end() || !found->second.widget)
            continue;
        found->second.hint = found->second.widget->sizeHint();
        measure(found->second);
    }
}

int CCellWidgetLayer::neededWidth(int column) const
{
    return size_t(column) < m_neededWidths.size() ? m_neededWidths[size_t(column)] : 0;
}

std::vector<quint64> CCellWidgetLayer::cellsInSight() const
{
    std::vector<quint64> keys;
    const QRect viewport = m_view->viewport()->rect();
    const int first = m_view->rowAt(0);
    if (first < 0)
        return keys;
    const int lowest = m_view->rowAt(viewport.height() - 1);
    const int last = lowest < 0 ? m_model.rowCount() - 1 : lowest;
    for (int column = 0; column < m_store.columnCount(); ++column) {
        const int left = m_view->columnViewportPosition(column);
        if (!m_store.columnHasWidgets(column) || left >= viewport.width() ||
            left + m_view->columnWidth(column) <= 0)
            continue;
        for (int viewRow = first; viewRow <= last; ++viewRow) {
            const int row = m_model.rowAt(viewRow);
            if (m_store.isWidgetCell(row, column))
                keys.push_back(CRowStore::cellKey(row, column));
        }
    }
    return keys;
}

void CCellWidgetLayer::sync()
{
    if (m_isSyncing)
        return;
    const QScopedValueRollback<bool> syncing(m_isSyncing, true);
    ++m_pass;
    const std::vector<quint64> keys = cellsInSight();
    for (const quint64 key : keys) {
        if (const auto found = m_cells.find(key); found != m_cells.end())
            found->second.pass = m_pass;
    }
    const std::vector<quint64> before = std::move(m_inSight);
    m_inSight = keys;
    // First what leaves, so that its check boxes serve the cells that come.
    for (const quint64 key : before) {
        const auto found = m_cells.find(key);
        if (found != m_cells.end() && found->second.pass != m_pass)
            putAway(key);
    }
    const quint32 generation = m_generation;
    for (const quint64 key : keys) {
        SCell* const cell = ensure(int(key >> 32), int(quint32(key)));
        if (generation != m_generation)
            return;
        if (!cell || !cell->widget)
            continue;
        cell->pass = m_pass;
        place(*cell);
    }
    parkSpare();
    evictIdle();
}

void CCellWidgetLayer::parkSpare()
{
    for (const QPointer<CCheckBox>& box : m_boxes->spare()) {
        if (box)
            park(box);
    }
    for (QWidget* const widget : m_columnWidgets->spare())
        park(widget);
}

void CCellWidgetLayer::place(SCell& cell)
{
    QWidget* const widget = cell.widget;
    const int viewRow = m_model.viewRowOf(cell.row);
    const QRect cellRect(m_view->columnViewportPosition(cell.column),
                         m_view->rowViewportPosition(viewRow), m_view->columnWidth(cell.column),
                         m_view->rowHeight(viewRow));
    const QRect rect = cell.alignment == COddEvenRowTable::ALIGN_FILL
                           ? cellRect
                           : QStyle::alignedRect(Qt::LeftToRight, Qt::Alignment(cell.alignment),
                                                 cell.size.boundedTo(cellRect.size()), cellRect);
    if (widget->parentWidget() != m_view->viewport())
        widget->setParent(m_view->viewport());
    widget->setGeometry(rect);
    if (!widget->isVisibleTo(m_view->viewport()) && !isHiddenByOwner(widget))
        widget->show();
}

void CCellWidgetLayer::putAway(quint64 key)
{
    SCell& cell = m_cells.at(key);
    if (!cell.widget)
        return;
    if (giveBack(cell)) {
        m_cells.erase(key);
        return;
    }
    park(cell.widget);
    if (!cell.isPinned)
        m_idle.push_back(key);
}

void CCellWidgetLayer::evictIdle()
{
    std::erase_if(m_idle, [this](quint64 key) {
        const auto found = m_cells.find(key);
        return found == m_cells.end() || found->second.pass == m_pass;
    });
    if (m_idle.size() <= MOST_IDLE)
        return;
    const auto end = m_idle.end() - MOST_IDLE;
    for (auto key = m_idle.begin(); key != end; ++key) {
        discard(m_cells.at(*key).widget);
        m_cells.erase(*key);
    }
    m_idle.erase(m_idle.begin(), end);
}

void CCellWidgetLayer::showTick(int row, int column)
{
    SCell* const cell = find(row, column);
    auto* const box = cell ? qobject_cast<CCheckBox*>(cell->widget.data()) : nullptr;
    if (!box || !cell->isTick)
        return;
    cell->alignment = m_store.tick(row, column)->alignment;
    m_boxes->show(box);
}

QList<QWidget*> CCellWidgetLayer::focusWidgets(int row, int column) const
{
    QWidget* const root = existingWidget(row, column);
    return root ? focusStops(root) : QList<QWidget*>();
}

} // namespace KZ
