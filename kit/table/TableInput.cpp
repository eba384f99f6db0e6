#include "kit/table/TableInput.h"

#include "kit/table/CellEditor.h"
#include "kit/table/CellWidgetLayer.h"
#include "kit/table/DisplayText.h"
#include "kit/table/TableColumns.h"
#include "kit/table/TableCore.h"
#include "kit/table/TableFilterBar.h"
#include "kit/table/TableSelection.h"
#include "kit/table/TableView.h"
#include "kit/widgets/Menu.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QScrollBar>

#include <algorithm>
#include <utility>
#include <vector>

namespace KZ {

CTableInput::CTableInput(CTableCore& core, int menuFlags)
    : QObject(&core), m_core(core), m_menuFlags(menuFlags)
{
    CTableFilterBar* const bar = m_core.filterBar();
    connect(bar, &CTableFilterBar::textChanged, &m_core, &CTableCore::setFilter);
    connect(bar, &CTableFilterBar::closed, this, &CTableInput::closeFilter);
    connect(bar, &CTableFilterBar::left, this, &CTableInput::leaveFilter);
}

bool CTableInput::needsEscape() const
{
    return focusedCellWidget() || !m_core.filterBar()->isHidden();
}

/// The row's widget that has the focus; the editor of a cell is none.
QWidget* CTableInput::focusedCellWidget() const
{
    QWidget* const focus = QApplication::focusWidget();
    const bool isInRow = focus && m_core.view()->viewport()->isAncestorOf(focus) &&
                         !qobject_cast<CCellEditor*>(focus);
    return isInRow ? focus : nullptr;
}

/// What is left of a key that a row's widget did not want.
bool CTableInput::cellWidgetKeyPressed(QWidget* focused, const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Escape:
        m_core.view()->setFocus(Qt::OtherFocusReason);
        return true;
    case Qt::Key_Left:
        moveInRow(focused, -1);
        return true;
    case Qt::Key_Right:
        moveInRow(focused, 1);
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        // They choose another row, which is done in the view.
        m_core.view()->setFocus(Qt::OtherFocusReason);
        return false;
    case Qt::Key_Space:
        // The ticks belong to the framed row, which need not be this one.
        return true;
    default:
        return false;
    }
}

/// Goes to the next widget of the row, as far as there is one.
void CTableInput::moveInRow(QWidget* focused, int step)
{
    const QPointer<CTableInput> guard(this);
    const QPointer<QWidget> stayed(focused);
    const auto [row, column] = m_core.layer().cellOfWidget(focused);
    const QList<QWidget*> stops = m_core.focusWidgets(row, column);
    if (!guard)
        return;
    const qsizetype at = stops.indexOf(stayed) + step;
    if (at >= 0 && at < stops.size()) {
        stops[at]->setFocus(Qt::OtherFocusReason);
        return;
    }
    const int place = m_core.view()->horizontalHeader()->visualIndex(column) + step;
    if (focusInRow(row, place, step) || !stayed || stayed->hasFocus())
        return;
    // It lost the focus when the search scrolled it out of sight.
    m_core.flush();
    if (guard && stayed)
        stayed->setFocus(Qt::OtherFocusReason);
}

/// Goes to the first widget of the row from a place on, and brings it into sight.
bool CTableInput::focusInRow(int row, int place, int step)
{
    const CRowStore& store = m_core.store();
    CTableView* const view = m_core.view();
    const int sideways = view->horizontalScrollBar()->value();
    const int viewRow = m_core.model().viewRowOf(row);
    const QPointer<CTableInput> guard(this);
    for (; place >= 0 && place < store.columnCount(); place += step) {
        const int column = view->horizontalHeader()->logicalIndex(place);
        if (!store.isWidgetCell(row, column) || store.tick(row, column))
            continue;
        view->scrollTo(m_core.model().index(viewRow, column));
        const QList<QWidget*> stops = m_core.focusWidgets(row, column);
        if (!guard)
            return true;
        if (!stops.isEmpty()) {
            (step > 0 ? stops.first() : stops.last())->setFocus(Qt::OtherFocusReason);
            return true;
        }
    }
    view->horizontalScrollBar()->setValue(sideways);
    return false;
}

bool CTableInput::keyPressed(QKeyEvent& event)
{
    m_core.publish();
    if (QWidget* const focused = focusedCellWidget()) {
        const QPointer<CTableInput> guard(this);
        if (cellWidgetKeyPressed(focused, event) || !guard)
            return true;
    }
    if (event.matches(QKeySequence::Copy)) {
        copySelection();
        return true;
    }
    if (event.matches(QKeySequence::SelectAll)) {
        m_core.view()->selectAll();
        return true;
    }
    const bool isPlain = (event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) == 0;
    if (!isPlain)
        return false;
    switch (event.key()) {
    case Qt::Key_Space:
        // A key that is held down must not tick on and off, nor go on in another place.
        if (!event.isAutoRepeat())
            toggleSelectedTicks();
        return true;
    case Qt::Key_F2:
        return returnToEditor();
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return enterRow();
    case Qt::Key_Escape:
        if (m_core.filterBar()->isHidden())
            return false;
        closeFilter();
        return true;
    default:
        break;
    }
    const QString text = event.text();
    if (text.isEmpty() || !text.front().isPrint() ||
        m_core.view()->currentIndex().flags().testFlag(Qt::ItemIsEditable))
        return false;
    openFilter();
    m_core.filterBar()->edit()->insert(text);
    return true;
}

void CTableInput::textComposed(QInputMethodEvent& event)
{
    openFilter();
    QApplication::sendEvent(m_core.filterBar()->edit(), &event);
}

/// Goes on in an editor that stayed open because its text was refused.
bool CTableInput::returnToEditor()
{
    CTableView* const view = m_core.view();
    const QList<CCellEditor*> editors = view->viewport()->findChildren<CCellEditor*>();
    for (CCellEditor* const editor : editors) {
        if (editor->isVisible() && editor->isEnabled() && editor->index().isValid()) {
            view->scrollTo(editor->index());
            editor->setFocus(Qt::OtherFocusReason);
            return true;
        }
    }
    return false;
}

/// Goes on in an open editor, else starts editing the current cell, else the row's first editable
/// one, else goes to the row's widgets.
bool CTableInput::enterRow()
{
    if (returnToEditor())
        return true;
    CTableView* const view = m_core.view();
    const QModelIndex current = view->currentIndex();
    if (current.flags().testFlag(Qt::ItemIsEditable))
        return view->editCell(current);
    for (int place = 0; place < m_core.store().columnCount(); ++place) {
        const QModelIndex cell =
            current.siblingAtColumn(view->horizontalHeader()->logicalIndex(place));
        if (cell.flags().testFlag(Qt::ItemIsEditable)) {
            // Whoever hears of the chosen row may rebuild the table.
            const QPointer<CTableView> guard(view);
            const QPersistentModelIndex kept(cell);
            view->setCurrentIndex(cell);
            return !guard || view->editCell(kept);
        }
    }
    return focusInRow(m_core.model().rowAt(current.row()), 0, 1);
}

void CTableInput::updateHint()
{
    const CRowStore& store = m_core.store();
    if (store.rowCount() == 0)
        return;
    const SHint hint{store.hasTicks(), store.hasWidgets(), m_core.model().isEditable()};
    // Asked for at every look at the table, changed hardly ever.
    if (m_hint == hint)
        return;
    m_hint = hint;
    QStringList keys;
    if (hint.hasTicks)
        keys.append(tr("空格勾选或取消"));
    if (hint.isEditable && hint.hasTicks)
        keys.append(tr("回车编辑"));
    else if (hint.hasWidgets)
        keys.append(tr("回车进入行内按钮，Esc 返回"));
    if (!keys.isEmpty())
        keys.append(tr("Tab 离开列表"));
    const QString text = keys.join(QStringLiteral("；"));
    m_core.view()->setToolTip(text);
    m_core.view()->setAccessibleDescription(text);
}

/// All selected rows when the framed one is among them or there is none, else the framed one alone.
void CTableInput::toggleSelectedTicks()
{
    if (!m_core.model().isInnerEnabled())
        return;
    QVector<int> rows = m_core.selection().rows();
    const int framed = m_core.model().rowAt(m_core.view()->currentIndex().row());
    if (framed >= 0 && !rows.contains(framed))
        rows = {framed};
    const CRowStore& store = m_core.store();
    const int currentColumn = m_core.view()->currentIndex().column();
    std::vector<std::pair<int, int>> cells;
    bool allTicked = true;
    for (const int row : std::as_const(rows)) {
        const int column =
            store.tick(row, currentColumn) ? currentColumn : store.firstTickColumn(row);
        const CRowStore::STick* const tick = store.tick(row, column);
        if (!tick || !tick->enabled)
            continue;
        cells.emplace_back(row, column);
        allTicked = allTicked && tick->checked;
    }
    const QPointer<CTableInput> guard(this);
    const quint32 generation = m_core.generation();
    for (const auto& [row, column] : cells) {
        m_core.toggleByUser(row, column, !allTicked);
        if (!guard || generation != m_core.generation())
            return;
    }
}

QString CTableInput::selectionAsText() const
{
    const QVector<int> rows = m_core.selection().rows();
    const CRowStore& store = m_core.store();
    const QHeaderView* const header = m_core.view()->horizontalHeader();
    QString text;
    for (const int row : rows) {
        if (!text.isEmpty())
            text += u'\n';
        for (int place = 0; place < store.columnCount(); ++place) {
            const int column = header->logicalIndex(place);
            if (place > 0)
                text += u'\t';
            if (const CRowStore::STick* const tick = store.tick(row, column))
                text += tick->checked ? tr("是") : tr("否");
            else
                text += clipboardText(store.text(row, column));
        }
    }
    return text;
}

void CTableInput::copySelection()
{
    const QString text = selectionAsText();
    if (!text.isEmpty())
        QApplication::clipboard()->setText(text);
}

void CTableInput::openFilter()
{
    CTableFilterBar* const bar = m_core.filterBar();
    if (bar->isHidden()) {
        m_core.publish();
        bar->setCount(m_core.model().rowCount(), m_core.store().rowCount());
        bar->show();
        m_core.place();
    }
    bar->edit()->setFocus(Qt::ShortcutFocusReason);
}

void CTableInput::closeFilter()
{
    m_core.view()->setFocus(Qt::OtherFocusReason);
    clearFilter();
}

void CTableInput::clearFilter()
{
    CTableFilterBar* const bar = m_core.filterBar();
    if (bar->isHidden())
        return;
    bar->edit()->clear();
    if (bar->edit()->hasFocus())
        m_core.view()->setFocus(Qt::OtherFocusReason);
    bar->hide();
    m_core.place();
}

void CTableInput::leaveFilter(int key)
{
    CTableView* const view = m_core.view();
    view->setFocus(Qt::OtherFocusReason);
    if (key == Qt::Key_Return || key == Qt::Key_Enter)
        return;
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(view, &press);
}

void CTableInput::addSortActions(QMenu* menu, int column)
{
    QHeaderView* const header = m_core.view()->horizontalHeader();
    const QString name = safeText(m_core.model().headerText(column), 32);
    const auto add = [&](const QString& text, int section, Qt::SortOrder order) {
        menu->addAction(text, this,
                        [header, section, order] { header->setSortIndicator(section, order); });
    };
    if (column >= 0) {
        add(tr("按“%1”升序").arg(name), column, Qt::AscendingOrder);
        add(tr("按“%1”降序").arg(name), column, Qt::DescendingOrder);
    }
    if (m_core.model().sortColumn() >= 0)
        add(tr("取消排序"), -1, Qt::AscendingOrder);
}

void CTableInput::showMenu(const QPoint& globalPos, int column)
{
    m_core.publish();
    auto* const menu = new CMenu(m_core.view());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const bool hasSelection = m_core.view()->selectionModel()->hasSelection();
    if (m_menuFlags & COddEvenRowTable::MENU_COPY)
        menu->addAction(tr("复制\tCtrl+C"), this, &CTableInput::copySelection)
            ->setEnabled(hasSelection);
    if (m_menuFlags & COddEvenRowTable::MENU_SELECT_ALL)
        menu->addAction(tr("全选\tCtrl+A"), m_core.view(), &QTableView::selectAll)
            ->setEnabled(m_core.model().rowCount() > 0);
    if (m_menuFlags & COddEvenRowTable::MENU_FILTER)
        menu->addAction(tr("筛选…"), this, &CTableInput::openFilter);
    if (m_menuFlags & COddEvenRowTable::MENU_SORT) {
        menu->addSeparator();
        addSortActions(menu, column);
    }
    if (m_menuFlags & COddEvenRowTable::MENU_RESET_COLUMNS) {
        menu->addSeparator();
        menu->addAction(tr("恢复默认列"), &m_core.columns(), &CTableColumns::reset);
    }
    if (menu->isEmpty())
        delete menu;
    else
        menu->popup(globalPos);
}

} // namespace KZ
