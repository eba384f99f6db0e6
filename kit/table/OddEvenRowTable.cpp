#include "kit/table/OddEvenRowTable.h"

#include "kit/events/EventIds.h"
#include "kit/resources/UiResource.h"
#include "kit/table/CellWidgetLayer.h"
#include "kit/table/ColumnWidgets.h"
#include "kit/table/TableColumns.h"
#include "kit/table/TableCore.h"
#include "kit/table/TableInput.h"
#include "kit/table/TableSelection.h"
#include "kit/table/TableView.h"
#include "kit/table/TickBoxes.h"

#include <QEvent>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace KZ {

namespace {

/// Rows and characters for which a table asks room when nobody has sized it.
constexpr int HINTED_ROWS = 8;
constexpr int HINTED_CHARACTERS = 40;
constexpr int LEAST_ROWS = 2;

} // namespace

COddEvenRowTable::COddEvenRowTable(int id, QWidget* parent, int menuFlags)
    : CBaseWidget(parent), m_core(std::make_unique<CTableCore>(this, id, menuFlags))
{
}

COddEvenRowTable::~COddEvenRowTable() = default;

int COddEvenRowTable::getID() const
{
    return m_core->id();
}

void COddEvenRowTable::setFlag(int flags)
{
    m_core->setFlag(flags);
}

void COddEvenRowTable::setColumnCount(int count)
{
    m_core->setColumnCount(count);
}

int COddEvenRowTable::columnCount() const
{
    return m_core->store().columnCount();
}

void COddEvenRowTable::setHeaderText(int column, const QString& text)
{
    m_core->model().setHeaderText(column, text);
    m_core->columns().fit();
}

QString COddEvenRowTable::headerText(int column) const
{
    return m_core->model().headerText(column);
}

void COddEvenRowTable::setHeaderCentered(int column, bool centered)
{
    m_core->model().setHeaderCentered(column, centered);
}

void COddEvenRowTable::setColumnWidth(int column, int px)
{
    m_core->columns().setWidth(column, px);
}

int COddEvenRowTable::columnWidth(int column) const
{
    return m_core->columns().width(column);
}

void COddEvenRowTable::setColumnEditable(int column, bool editable)
{
    m_core->model().setColumnEditable(column, editable);
}

void COddEvenRowTable::clear()
{
    m_core->clearRows();
}

int COddEvenRowTable::rowCount() const
{
    return m_core->store().rowCount();
}

int COddEvenRowTable::addRowBegin()
{
    return m_core->appendRow();
}

void COddEvenRowTable::addRowEnd(bool refresh)
{
    if (refresh)
        m_core->cellsMoved();
}

int COddEvenRowTable::appendRow()
{
    const int row = addRowBegin();
    addRowEnd(true);
    return row;
}

void COddEvenRowTable::setRowKey(int row, const QString& key)
{
    m_core->store().setRowKey(row, key);
}

QString COddEvenRowTable::rowKey(int row) const
{
    return m_core->store().rowKey(row);
}

bool COddEvenRowTable::isRowShown(int row) const
{
    m_core->publish();
    return m_core->model().viewRowOf(row) >= 0;
}

void COddEvenRowTable::setItemText(int row, int column, const QString& text, bool)
{
    if (m_core->store().setText(row, column, text))
        m_core->cellChanged(row, column);
}

QString COddEvenRowTable::itemText(int row, int column) const
{
    return m_core->store().text(row, column);
}

void COddEvenRowTable::setItemTextColorKey(int row, int column, const char* key)
{
    m_core->store().setColorKey(row, column, key);
    m_core->cellChanged(row, column);
}

QString COddEvenRowTable::itemTextColorKey(int row, int column) const
{
    return m_core->store().colorKey(row, column);
}

void COddEvenRowTable::setItemInt(int row, int column, int value)
{
    setItemText(row, column, QString::number(value));
}

int COddEvenRowTable::itemInt(int row, int column) const
{
    const double value = std::trunc(itemDouble(row, column));
    using Limits = std::numeric_limits<int>;
    return int(std::clamp(value, double(Limits::min()), double(Limits::max())));
}

double COddEvenRowTable::itemDouble(int row, int column) const
{
    bool ok = false;
    const double value = m_core->store().text(row, column).trimmed().toDouble(&ok);
    return ok && std::isfinite(value) ? value : 0.0;
}

void COddEvenRowTable::setItemToolTip(int row, int column, const QString& text)
{
    m_core->store().setToolTip(row, column, text);
}

void COddEvenRowTable::setItemIconKey(int row, int column, const QString& key)
{
    m_core->store().setIconKey(row, column, key);
    m_core->cellChanged(row, column);
}

void COddEvenRowTable::setItemWidget(int row, int column, QWidget* widget, int alignment, bool)
{
    m_core->setWidget(row, column, widget, alignment);
}

void COddEvenRowTable::setItemWidget(int row, int column, CellWidgetFactory factory, int alignment)
{
    const bool present = factory != nullptr;
    m_core->setFactory(row, column, {std::move(factory), alignment, present});
}

void COddEvenRowTable::setColumnWidgets(int column, CColumnWidgetKind kind)
{
    m_core->layer().columnWidgets().setKind(column, std::move(kind));
}

void COddEvenRowTable::setItemColumnWidget(int row, int column)
{
    m_core->setColumnWidget(row, column);
}

void COddEvenRowTable::setItemCheckBox(int row, int column, int id, bool checked, bool enabled,
                                       int alignment)
{
    m_core->setTick(row, column, {id, alignment, true, checked, enabled});
}

bool COddEvenRowTable::hasItemCheckBox(int row, int column) const
{
    return std::as_const(*m_core).store().tick(row, column) != nullptr;
}

bool COddEvenRowTable::isItemChecked(int row, int column) const
{
    const CRowStore::STick* const tick = std::as_const(*m_core).store().tick(row, column);
    return tick && tick->checked;
}

bool COddEvenRowTable::isItemCheckEnabled(int row, int column) const
{
    const CRowStore::STick* const tick = std::as_const(*m_core).store().tick(row, column);
    return tick && tick->enabled;
}

void COddEvenRowTable::setItemChecked(int row, int column, bool checked)
{
    m_core->setChecked(row, column, checked);
}

void COddEvenRowTable::setItemCheckEnabled(int row, int column, bool enabled)
{
    m_core->setCheckEnabled(row, column, enabled);
}

QWidget* COddEvenRowTable::itemWidget(int row, int column)
{
    return m_core->widget(row, column);
}

void COddEvenRowTable::setInnerEnabled(bool enabled)
{
    m_core->setInnerEnabled(enabled);
}

int COddEvenRowTable::selectedRow() const
{
    return m_core->selection().row();
}

QVector<int> COddEvenRowTable::selectedRows() const
{
    return m_core->selection().rows();
}

void COddEvenRowTable::selectRow(int row)
{
    m_core->selection().select(row);
}

bool COddEvenRowTable::isFilterHiding() const
{
    m_core->publish();
    return m_core->model().rowCount() < m_core->store().rowCount();
}

void COddEvenRowTable::clearFilter()
{
    m_core->input().clearFilter();
}

QString COddEvenRowTable::saveConfigStr() const
{
    return m_core->columns().save();
}

void COddEvenRowTable::loadConfigStr(const QString& text)
{
    m_core->columns().load(text);
}

QTableView* COddEvenRowTable::view() const
{
    QTableView* const view = m_core->view();
    m_core->flush();
    return view;
}

bool COddEvenRowTable::handleEvent(int eventId, int param1, int param2, QString text, void* data)
{
    // The check box may tell its owner before it tells the store.
    if (eventId == EVENT_CHECK_TOGGLED && data) {
        const QPointer<COddEvenRowTable> guard(this);
        m_core->layer().boxes().read(static_cast<QWidget*>(data));
        if (!guard)
            return true;
    }
    return CBaseWidget::handleEvent(eventId, param1, param2, std::move(text), data);
}

void COddEvenRowTable::onUiResourceChanged()
{
    CBaseWidget::onUiResourceChanged();
    m_core->updateResources();
}

QSize COddEvenRowTable::sizeHint() const
{
    const int rowHeight = CUiResource::getSize(QStringLiteral("gw_siz_kit_table_row_height"));
    const int headerHeight = CUiResource::getSize(QStringLiteral("gw_siz_kit_table_header_height"));
    return QSize(HINTED_CHARACTERS * fontMetrics().averageCharWidth(),
                 headerHeight + HINTED_ROWS * rowHeight);
}

QSize COddEvenRowTable::minimumSizeHint() const
{
    const int rowHeight = CUiResource::getSize(QStringLiteral("gw_siz_kit_table_row_height"));
    const int headerHeight = CUiResource::getSize(QStringLiteral("gw_siz_kit_table_header_height"));
    return QSize(headerHeight, headerHeight + LEAST_ROWS * rowHeight);
}

bool COddEvenRowTable::event(QEvent* event)
{
    const QPointer<COddEvenRowTable> guard(this);
    // m_core is missing while the constructor of the base is at work.
    if (event->type() == QEvent::Paint && m_core)
        m_core->flush(true);
    else if (event->type() == QEvent::FontChange && m_core)
        m_core->updateResources();
    else if (event->type() == QEvent::Show && m_core)
        m_core->updateAccessibleName();
    return guard ? CBaseWidget::event(event) : true;
}

void COddEvenRowTable::resizeEvent(QResizeEvent* event)
{
    CBaseWidget::resizeEvent(event);
    m_core->place();
}

} // namespace KZ
