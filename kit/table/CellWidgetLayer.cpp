#include "kit/table/CellWidgetLayer.h"

#include "kit/resources/UiResource.h"
#include "kit/table/CellButtons.h"
#include "kit/table/CellWidgetTools.h"
#include "kit/table/ColumnWidgets.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/table/RowStore.h"
#include "kit/table/TableModel.h"
#include "kit/table/TickBoxes.h"
#include "kit/widgets/CheckBox.h"

#include <QScopeGuard>
#include <QStyle>
#include <QTableView>

#include <algorithm>
#include <utility>

namespace KZ {

namespace {

/// Widgets kept out of sight for scrolling back: about three pages of one column.
constexpr size_t MOST_IDLE = 96;

} // namespace

/// Tells, after the owner's code has run, whether the layer and the rows are still the same.
class CCellWidgetLayer::CWatch
{
public:
    explicit CWatch(const CCellWidgetLayer* layer)
        : m_layer(layer), m_generation(layer->m_generation)
    {
    }
    explicit operator bool() const { return m_layer && m_layer->m_generation == m_generation; }

private:
    const QPointer<const CCellWidgetLayer> m_layer;
    const quint32 m_generation;
};

CCellWidgetLayer::CCellWidgetLayer(QTableView* view, CRowStore& store, const CTableModel& model,
                                   QWidget* table)
    : QObject(view), m_view(view), m_store(store), m_model(model), m_parking(view, table),
      m_buttons(new CCellButtons(
          [this](const QWidget* widget) { return cellOfWidget(widget).first >= 0; }, this)),
      m_boxes(new CTickBoxes(store, model, view->viewport())),
      m_columnWidgets(std::make_unique<CColumnWidgets>())
{
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

std::pair<int, int> CCellWidgetLayer::cellOfWidget(const QWidget* widget) const
{
    for (const auto& [key, cell] : m_cells) {
        if (cell.widget && (cell.widget == widget || cell.widget->isAncestorOf(widget)))
            return {cell.row, cell.column};
    }
    return {-1, -1};
}

QWidget* CCellWidgetLayer::widget(int row, int column)
{
    const CWatch watch(this);
    const QPointer<QWidget> widget = ensure(row, column);
    SCell* const cell = watch && widget ? find(row, column) : nullptr;
    if (!cell)
        return nullptr;
    if (!cell->isPinned) {
        cell->isPinned = true;
        std::erase(m_idle, CRowStore::cellKey(row, column));
    }
    // One that is not in its place would show up in a corner as soon as the viewport is shown.
    if (cell->pass != m_pass || m_pass == 0)
        m_parking.park(widget);
    return watch ? widget.data() : nullptr;
}

void CCellWidgetLayer::adopt(int row, int column, QWidget* widget)
{
    const CWatch watch(this);
    const QPointer<QWidget> adopted(widget);
    drop(row, column);
    if (!watch || !adopted || find(row, column)) {
        if (adopted)
            adopted->deleteLater();
        return;
    }
    const quint64 key = CRowStore::cellKey(row, column);
    SCell& cell = m_cells[key];
    cell.row = row;
    cell.column = column;
    cell.widget = widget;
    cell.isPinned = true;
    if (auto* const box = qobject_cast<CCheckBox*>(widget); box && m_store.tick(row, column)) {
        cell.isTick = true;
        m_boxes->bind(box, row, column, true);
    }
    if (watch && adopted)
        m_parking.park(adopted);
    if (watch)
        prepare(key);
}

void CCellWidgetLayer::drop(int row, int column)
{
    if (m_cells.empty())
        return;
    const quint64 key = CRowStore::cellKey(row, column);
    const auto found = m_cells.find(key);
    if (found == m_cells.end())
        return;
    QWidget* const widget = found->second.widget;
    m_cells.erase(found);
    std::erase(m_inSight, key);
    std::erase(m_idle, key);
    discard(widget);
}

void CCellWidgetLayer::setEnabled(bool enabled)
{
    m_parking.setEnabled(enabled);
}

void CCellWidgetLayer::clear()
{
    ++m_generation;
    m_inSight.clear();
    m_idle.clear();
    const QPointer<CCellWidgetLayer> guard(this);
    const auto cells = std::exchange(m_cells, {});
    for (const auto& [key, cell] : cells) {
        if (!giveBack(cell))
            discard(cell.widget);
        if (!guard)
            return;
    }
}

void CCellWidgetLayer::discard(QWidget* widget)
{
    if (!widget)
        return;
    m_boxes->release(widget);
    m_parking.discard(widget);
}

QWidget* CCellWidgetLayer::ensure(int row, int column)
{
    const SCell* const cell = find(row, column);
    if (cell && (cell->widget || !cell->isTick))
        return cell->widget;
    if (m_store.tick(row, column))
        return makeTick(row, column);
    return m_store.isWidgetCell(row, column) ? makeWidget(row, column) : nullptr;
}

QWidget* CCellWidgetLayer::makeWidget(int row, int column)
{
    const CWatch watch(this);
    const bool isShared = m_store.hasColumnWidget(row, column);
    const auto factory = isShared ? nullptr : m_store.cellWidget(row, column)->factory;
    // Whether, after the owner's code has run, the cell still waits for such a widget.
    const auto isWanted = [&] {
        return watch && !find(row, column) && m_store.hasColumnWidget(row, column) == isShared &&
               (isShared || m_store.cellWidget(row, column));
    };
    QPointer<QWidget> made;
    if (isShared)
        made = m_columnWidgets->take(column, m_view->viewport());
    else if (factory)
        made = factory(m_view->viewport());
    if (isShared && made && isWanted())
        m_columnWidgets->bind(column, row, made);
    if (!isWanted()) {
        if (made) {
            made->hide();
            made->deleteLater();
        }
        return watch ? existingWidget(row, column) : nullptr;
    }
    const quint64 key = CRowStore::cellKey(row, column);
    SCell& cell = m_cells[key];
    cell.row = row;
    cell.column = column;
    cell.widget = made;
    cell.isShared = isShared;
    prepare(key);
    return watch ? existingWidget(row, column) : nullptr;
}

QWidget* CCellWidgetLayer::makeTick(int row, int column)
{
    const CWatch watch(this);
    CCheckBox* const box = m_boxes->take();
    const quint64 key = CRowStore::cellKey(row, column);
    SCell& cell = m_cells[key];
    cell.row = row;
    cell.column = column;
    cell.isTick = true;
    cell.widget = box;
    m_boxes->bind(box, row, column, false);
    if (watch)
        prepare(key);
    return watch ? existingWidget(row, column) : nullptr;
}

bool CCellWidgetLayer::giveBack(const SCell& cell)
{
    if (cell.isPinned || !cell.widget || m_buttons->isPressed(cell.widget))
        return false;
    if (cell.isShared)
        return !isHiddenByOwner(cell.widget) && m_columnWidgets->giveBack(cell.column, cell.widget);
    auto* const box = cell.isTick ? qobject_cast<CCheckBox*>(cell.widget.data()) : nullptr;
    if (box)
        m_boxes->giveBack(box);
    return box != nullptr;
}

/// First contact with a cell's widget.
void CCellWidgetLayer::prepare(quint64 key)
{
    const auto found = m_cells.find(key);
    if (found == m_cells.end() || !found->second.widget)
        return;
    SCell& cell = found->second;
    if (const auto* const tick = m_store.tick(cell.row, cell.column))
        cell.alignment = tick->alignment;
    else if (const auto* const own = m_store.cellWidget(cell.row, cell.column))
        cell.alignment = own->alignment;
    else
        cell.alignment = m_columnWidgets->alignment(cell.column);
    m_buttons->watch(cell.widget);
    if (!cell.isTick)
        takeFromTabChain(cell.widget);
    if (!cell.isTick && cell.widget->testAttribute(Qt::WA_Resized))
        cell.ownSize = cell.widget->size();
    askForSize(key);
}

/// Asks the cell's widget how large it wants to be; true when that has changed.
bool CCellWidgetLayer::askForSize(quint64 key)
{
    const CWatch watch(this);
    const QPointer<QWidget> widget = m_cells.at(key).widget;
    const QSize hint = widget->sizeHint();
    const int leastWidth = widget ? widget->minimumSizeHint().width() : 0;
    if (!watch)
        return false;
    const auto found = m_cells.find(key);
    if (found == m_cells.end() || !widget || found->second.widget != widget)
        return false;
    const bool isChanged = found->second.hint != hint;
    found->second.hint = hint;
    measure(found->second, leastWidth);
    return isChanged;
}

void CCellWidgetLayer::measure(SCell& cell, int leastWidth)
{
    const QWidget* const widget = cell.widget;
    const QSize wanted = cell.ownSize.isValid() ? cell.ownSize : cell.hint;
    cell.size = wanted.expandedTo(widget->minimumSize()).boundedTo(widget->maximumSize());
    const int padding = CUiResource::getSize(QStringLiteral("gw_siz_kit_table_cell_padding"));
    const int needed = cell.alignment == COddEvenRowTable::ALIGN_FILL
                           ? leastWidth
                           : cell.size.width() + 2 * padding;
    if (size_t(cell.column) >= m_neededWidths.size())
        m_neededWidths.resize(size_t(cell.column) + 1);
    int& width = m_neededWidths[size_t(cell.column)];
    width = std::max(width, needed);
}

bool CCellWidgetLayer::remeasure()
{
    const CWatch watch(this);
    bool isChanged = false;
    const std::vector<quint64> keys = m_inSight;
    for (const quint64 key : keys) {
        const auto found = m_cells.find(key);
        if (found == m_cells.end() || !found->second.widget)
            continue;
        // A widget that asks for another size gives up the one that its owner gave it.
        const QSize ownSize = std::exchange(found->second.ownSize, QSize());
        const bool isOther = askForSize(key);
        if (!watch)
            return false;
        isChanged = isChanged || isOther;
        if (const auto still = m_cells.find(key); !isOther && still != m_cells.end())
            still->second.ownSize = ownSize;
    }
    return isChanged;
}

void CCellWidgetLayer::remeasureAll()
{
    const CWatch watch(this);
    m_neededWidths.clear();
    // A widget out of sight is not measured again when its column is scrolled back.
    std::vector<quint64> keys;
    keys.reserve(m_cells.size());
    for (const auto& [key, cell] : m_cells)
        keys.push_back(key);
    for (const quint64 key : keys) {
        const auto found = m_cells.find(key);
        if (found == m_cells.end() || !found->second.widget)
            continue;
        askForSize(key);
        if (!watch)
            return;
    }
}

int CCellWidgetLayer::neededWidth(int column) const
{
    return size_t(column) < m_neededWidths.size() ? m_neededWidths[size_t(column)] : 0;
}

void CCellWidgetLayer::sync()
{
    if (m_isSyncing)
        return;
    m_isSyncing = true;
    const QPointer<CCellWidgetLayer> guard(this);
    const auto done = qScopeGuard([&guard] {
        if (guard)
            guard->m_isSyncing = false;
    });
    const CWatch watch(this);
    ++m_pass;
    const std::vector<quint64> keys = widgetCellsInSight(*m_view, m_store, m_model);
    for (const quint64 key : keys) {
        if (const auto found = m_cells.find(key); found != m_cells.end())
            found->second.pass = m_pass;
    }
    const std::vector<quint64> before = std::exchange(m_inSight, keys);
    // First what leaves, so that its check boxes serve the cells that come.
    for (const quint64 key : before) {
        const auto found = m_cells.find(key);
        if (found != m_cells.end() && found->second.pass != m_pass)
            putAway(key);
        if (!watch)
            return;
    }
    for (const quint64 key : keys) {
        if (ensure(int(key >> 32), int(quint32(key))))
            place(key);
        if (!watch)
            return;
    }
    m_parking.park(m_boxes->spare() + m_columnWidgets->spare());
    if (watch)
        evictIdle();
}

void CCellWidgetLayer::place(quint64 key)
{
    const CWatch watch(this);
    SCell& cell = m_cells.at(key);
    cell.pass = m_pass;
    const QPointer<QWidget> widget = cell.widget;
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
    if (watch && widget)
        widget->setGeometry(rect);
    if (watch && widget && !widget->isVisibleTo(m_view->viewport()) && !isHiddenByOwner(widget))
        widget->show();
}

void CCellWidgetLayer::putAway(quint64 key)
{
    const auto found = m_cells.find(key);
    const SCell cell = found->second;
    if (!cell.widget)
        return;
    m_cells.erase(found);
    if (giveBack(cell))
        return;
    m_cells.emplace(key, cell);
    if (!cell.isPinned)
        m_idle.push_back(key);
    m_parking.park(cell.widget);
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
    QList<QPointer<QWidget>> evicted;
    for (auto key = m_idle.begin(); key != end; ++key) {
        const auto found = m_cells.find(*key);
        evicted.append(found->second.widget);
        m_cells.erase(found);
    }
    m_idle.erase(m_idle.begin(), end);
    const QPointer<CCellWidgetLayer> guard(this);
    for (const QPointer<QWidget>& widget : std::as_const(evicted)) {
        discard(widget);
        if (!guard)
            return;
    }
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
