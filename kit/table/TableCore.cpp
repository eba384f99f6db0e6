#include "kit/table/TableCore.h"

#include "kit/events/EventIds.h"
#include "kit/resources/UiResource.h"
#include "kit/table/CellControls.h"
#include "kit/table/CellWidgetLayer.h"
#include "kit/table/TableColumns.h"
#include "kit/table/TableDelegate.h"
#include "kit/table/TableFilterBar.h"
#include "kit/table/TableInput.h"
#include "kit/table/TableSelection.h"
#include "kit/table/TableView.h"
#include "kit/table/TickBoxes.h"
#include "kit/widgets/CheckBox.h"

#include <QApplication>
#include <QEvent>
#include <QHeaderView>
#include <QPointer>
#include <QScopeGuard>
#include <QScopedValueRollback>

#include <utility>

namespace KZ {

namespace {

QEvent::Type flushEvent()
{
    static const auto type = QEvent::Type(QEvent::registerEventType());
    return type;
}

} // namespace

CTableCore::CTableCore(COddEvenRowTable* table, int id, int menuFlags)
    : m_table(table), m_id(id), m_model(new CTableModel(m_store, this)),
      m_view(new CTableView(*this, table)),
      m_delegate(new CTableDelegate(m_store, *m_model, m_view)),
      m_layer(new CCellWidgetLayer(m_view, m_store, *m_model, table)),
      m_controls(std::make_unique<CCellControls>(m_view, m_store, *m_model, *m_layer)),
      m_columns(new CTableColumns(m_view, *m_model, m_store, *m_delegate)),
      m_filterBar(new CTableFilterBar(table)), m_selection(nullptr),
      m_input(new CTableInput(*this, menuFlags))
{
    m_view->setModel(m_model);
    m_view->setItemDelegate(m_delegate);
    m_model->setHandlers(
        [this](int row, int column, const QString& text) { return textEdited(row, column, text); },
        [this](int row, int column, bool checked) { toggleByUser(row, column, checked); });
    m_layer->boxes().setHandlers(
        [this](int row, int column, bool checked) { setChecked(row, column, checked); },
        [this](int row, int column, bool enabled) { setCheckEnabled(row, column, enabled); });
    m_selection = new CTableSelection(m_view, *m_model, m_store);
    m_selection->setChosenHandler([this](int row) {
        m_table->deliverEvent(EVENT_ROW_SELECTED, row, m_id, QString(), m_table);
    });
    connect(m_view->horizontalHeader(), &QHeaderView::sectionResized, this,
            &CTableCore::cellsMoved);
    connect(m_view->horizontalHeader(), &QHeaderView::sectionMoved, this, &CTableCore::cellsMoved);
    connect(m_model, &QAbstractItemModel::layoutChanged, this, &CTableCore::cellsMoved);
    m_table->setFocusProxy(m_view);
    m_filterBar->hide();
    setFlag(COddEvenRowTable::FLAG_ALTERNATE_ROWS | COddEvenRowTable::FLAG_ROW_SELECTION);
    updateResources();
}

CTableCore::~CTableCore()
{
    // The view calls this object while it goes, so it has to go first.
    delete m_view;
}

void CTableCore::updateResources()
{
    const int rowHeight = CUiResource::getSize(QStringLiteral("gw_siz_kit_table_row_height"));
    m_view->verticalHeader()->setDefaultSectionSize(rowHeight);
    m_view->horizontalHeader()->setFixedHeight(
        CUiResource::getSize(QStringLiteral("gw_siz_kit_table_header_height")));
    m_filterBar->updateResources();
    const QPointer<CTableCore> guard(this);
    m_layer->remeasureAll();
    if (!guard)
        return;
    m_columns->remeasure();
    updateWidgetWidths();
    m_view->viewport()->update();
    cellsMoved();
}

void CTableCore::updateAccessibleName()
{
    const QString name = m_table->accessibleName();
    if (!name.isEmpty() || m_view->accessibleName().isEmpty())
        m_view->setAccessibleName(name.isEmpty() ? tr("列表") : name);
}

void CTableCore::place()
{
    QRect room = m_table->rect();
    if (!m_filterBar->isHidden()) {
        const int height = m_filterBar->sizeHint().height();
        m_filterBar->setGeometry(room.left(), room.bottom() + 1 - height, room.width(), height);
        room.setBottom(room.bottom() - height);
    }
    m_view->setGeometry(room);
}

void CTableCore::setFlag(int flags)
{
    m_view->setAlternatingRowColors((flags & COddEvenRowTable::FLAG_ALTERNATE_ROWS) != 0);
    m_view->setSelectionBehavior((flags & COddEvenRowTable::FLAG_ROW_SELECTION) != 0
                                     ? QAbstractItemView::SelectRows
                                     : QAbstractItemView::SelectItems);
}

void CTableCore::setColumnCount(int count)
{
    if (count == m_store.columnCount() || count < 0)
        return;
    const QPointer<CTableCore> guard(this);
    m_layer->clear();
    if (!guard)
        return;
    m_model->setColumns(count);
    m_columns->columnsChanged();
    cellsMoved();
}

void CTableCore::setInnerEnabled(bool enabled)
{
    if (m_model->isInnerEnabled() == enabled)
        return;
    m_model->setInnerEnabled(enabled);
    const QPointer<CTableCore> guard(this);
    const QWidget* const focus = QApplication::focusWidget();
    if (!enabled && focus && m_view->viewport()->isAncestorOf(focus))
        m_view->setFocus(Qt::OtherFocusReason);
    if (guard)
        m_view->viewport()->setEnabled(enabled);
    if (guard)
        m_layer->setEnabled(enabled);
}

void CTableCore::clearRows()
{
    m_selection->rememberPlace();
    m_selection->programActionBegun();
    ++m_generation;
    const QPointer<CTableCore> guard(this);
    m_layer->clear();
    if (!guard)
        return;
    m_model->clearRows();
    m_selection->programActionEnded();
    cellsMoved();
    // Widgets of rows that somebody added while the others went.
    m_layer->clear();
}

int CTableCore::appendRow()
{
    scheduleFlush();
    return m_store.appendRow();
}

void CTableCore::publishedCellChanged(int row, int column)
{
    m_model->cellChanged(row, column);
    scheduleFlush();
}

void CTableCore::cellReplaced(int row, int column)
{
    cellChanged(row, column);
    cellsMoved();
}

void CTableCore::setTick(int row, int column, const CRowStore::STick& tick)
{
    if (!m_store.contains(row, column))
        return;
    const bool hadTick = m_store.tick(row, column) != nullptr;
    m_store.setTick(row, column, tick);
    revealIfTicked(row);
    cellReplaced(row, column);
    if (hadTick && tick.present)
        m_layer->showTick(row, column);
    else
        m_layer->drop(row, column);
}

void CTableCore::setWidget(int row, int column, QWidget* widget, int alignment)
{
    if (!m_store.contains(row, column)) {
        if (widget)
            widget->deleteLater();
        return;
    }
    CRowStore::STick tick;
    if (const auto* const box = qobject_cast<CCheckBox*>(widget))
        tick = {box->id(), alignment, true, box->isChecked(),
                !box->testAttribute(Qt::WA_ForceDisabled)};
    if (tick.present)
        m_store.setTick(row, column, tick);
    else
        m_store.setCellWidget(row, column, {{}, alignment, widget != nullptr});
    revealIfTicked(row);
    cellReplaced(row, column);
    if (widget)
        m_layer->adopt(row, column, widget);
    else
        m_layer->drop(row, column);
}

void CTableCore::setFactory(int row, int column, CRowStore::SCellWidget source)
{
    m_store.setCellWidget(row, column, std::move(source));
    cellReplaced(row, column);
    m_layer->drop(row, column);
}

void CTableCore::setColumnWidget(int row, int column)
{
    m_store.setColumnWidget(row, column);
    cellReplaced(row, column);
    m_layer->drop(row, column);
}

QWidget* CTableCore::widget(int row, int column)
{
    if (!m_store.contains(row, column))
        return nullptr;
    const QPointer<CTableCore> guard(this);
    flush();
    const QPointer<QWidget> widget =
        guard && m_store.contains(row, column) ? m_layer->widget(row, column) : nullptr;
    if (guard)
        updateWidgetWidths();
    return widget;
}

void CTableCore::changeTick(int row, int column, bool CRowStore::STick::*state, bool value)
{
    CRowStore::STick* const tick = m_store.tick(row, column);
    if (!tick || tick->*state == value)
        return;
    tick->*state = value;
    revealIfTicked(row);
    cellChanged(row, column);
    m_layer->showTick(row, column);
}

void CTableCore::toggleByUser(int row, int column, bool checked)
{
    const CRowStore::STick* const tick = m_store.tick(row, column);
    if (!tick || !tick->enabled || tick->checked == checked)
        return;
    const int tickId = tick->id;
    const QPointer<CTableCore> guard(this);
    const quint32 generation = m_generation;
    setChecked(row, column, checked);
    if (!guard || generation != m_generation)
        return;
    QWidget* const box = m_layer->existingWidget(row, column);
    m_table->deliverEvent(EVENT_CHECK_TOGGLED, tickId, checked ? 1 : 0, QString(),
                          box ? box : m_table);
}

bool CTableCore::textEdited(int row, int column, const QString& text)
{
    CCellEdit edit{text, true};
    const QPointer<CTableCore> guard(this);
    const quint32 generation = m_generation;
    m_table->deliverEvent(EVENT_CELL_EDITED, row, column, text, &edit);
    if (!edit.accepted)
        return false;
    if (guard && generation == m_generation && m_store.setText(row, column, edit.text))
        cellChanged(row, column);
    return true;
}

void CTableCore::revealIfTicked(int row)
{
    if (m_model->isFiltered() && m_model->viewRowOf(row) < 0 && m_store.isRowTicked(row)) {
        m_revealPending = true;
        scheduleFlush();
    }
}

void CTableCore::refilter()
{
    m_revealPending = false;
    m_selection->keepOver([this] { m_model->setFilter(m_filter); });
    m_filterBar->setCount(m_model->rowCount(), m_store.rowCount());
    cellsMoved();
}

void CTableCore::setFilter(const QString& text)
{
    publish();
    m_filter = text;
    refilter();
}

CTableSelection& CTableCore::selection()
{
    publish();
    return *m_selection;
}

void CTableCore::userActionBegun()
{
    m_selection->userActionBegun();
}

void CTableCore::userActionEnded()
{
    m_selection->userActionEnded();
}

void CTableCore::scheduleFlush()
{
    if (m_flushPosted)
        return;
    m_flushPosted = true;
    QCoreApplication::postEvent(this, new QEvent(flushEvent()));
}

bool CTableCore::event(QEvent* event)
{
    if (event->type() != flushEvent())
        return QObject::event(event);
    m_flushPosted = false;
    publish();
    m_selection->settle();
    flush();
    return true;
}

void CTableCore::publish()
{
    if (m_isPublishing)
        return;
    const QScopedValueRollback<bool> publishing(m_isPublishing, true);
    if (m_model->hasUnpublishedRows()) {
        m_selection->programActionBegun();
        m_model->publish();
        m_columns->measureTexts();
        m_selection->returnToPlace();
        m_selection->programActionEnded();
        m_filterBar->setCount(m_model->rowCount(), m_store.rowCount());
    }
    m_model->flushChanges();
    if (m_revealPending)
        refilter();
    m_input->updateHint();
}

void CTableCore::flush(bool painting)
{
    if (m_isFlushing)
        return;
    m_isFlushing = true;
    const QPointer<CTableCore> guard(this);
    const auto done = qScopeGuard([&guard] {
        if (guard)
            guard->m_isFlushing = false;
    });
    publish();
    if (!m_widgetsStale || !(painting || m_view->isVisible()))
        return;
    m_widgetsStale = false;
    m_view->layoutNow();
    m_layer->sync();
    if (!guard)
        return;
    updateWidgetWidths();
    if (std::exchange(m_widgetsStale, false))
        m_layer->sync();
}

void CTableCore::updateWidgetWidths()
{
    for (int column = 0; column < m_store.columnCount(); ++column)
        m_columns->setWidgetWidth(column, m_layer->neededWidth(column));
}

void CTableCore::cellsMoved()
{
    m_widgetsStale = true;
    if (!m_isFlushing)
        scheduleFlush();
}

void CTableCore::cellWidgetResized()
{
    const QPointer<CTableCore> guard(this);
    if (m_layer->remeasure() && guard)
        cellsMoved();
}

void CTableCore::viewResized()
{
    m_columns->fit();
    cellsMoved();
}

bool CTableCore::keyPressed(QKeyEvent& event)
{
    return m_input->keyPressed(event);
}

void CTableCore::textComposed(QInputMethodEvent& event)
{
    m_input->textComposed(event);
}

void CTableCore::contextMenuAsked(const QPoint& globalPos, int column)
{
    m_input->showMenu(globalPos, column);
}

bool CTableCore::needsEscape() const
{
    return m_input->needsEscape();
}

QList<QWidget*> CTableCore::focusWidgets(int row, int column)
{
    const QPointer<CTableCore> guard(this);
    flush();
    return guard ? m_layer->focusWidgets(row, column) : QList<QWidget*>();
}

int CTableCore::cellWidgetWidth(int column) const
{
    return m_layer->neededWidth(column);
}

} // namespace KZ
