#include "kit/table/TableView.h"

#include "kit/resources/KitStyle.h"
#include "kit/table/CellEditor.h"
#include "kit/table/TableViewClient.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QInputMethodEvent>
#include <QPointer>

#include <algorithm>

namespace KZ {

CTableView::CTableView(ITableViewClient& client, QWidget* parent)
    : QTableView(parent), m_client(client)
{
    setObjectName(QStringLiteral("halden_table_view"));
    setShowGrid(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setTabKeyNavigation(false);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                    QAbstractItemView::AnyKeyPressed);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    QHeaderView* const header = horizontalHeader();
    header->setSectionsMovable(true);
    header->setSectionsClickable(true);
    header->setHighlightSections(false);
    header->setSortIndicatorClearable(true);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    applyKitStyle(this);
    setAttribute(Qt::WA_InputMethodEnabled);
}

void CTableView::layoutNow()
{
    executeDelayedItemsLayout();
}

void CTableView::keyboardSearch(const QString&)
{
    // Typing filters the rows instead.
}

void CTableView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint)
{
    const auto* const cellEditor = qobject_cast<CCellEditor*>(editor);
    if (cellEditor && cellEditor->isRefused() && hint != QAbstractItemDelegate::RevertModelCache)
        return;
    QTableView::closeEditor(editor, hint);
}

bool CTableView::event(QEvent* event)
{
    if (event->type() == QEvent::Paint)
        m_client.aboutToPaint();
    return QTableView::event(event);
}

bool CTableView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::Paint)
        m_client.aboutToPaint();
    else if (event->type() == QEvent::LayoutRequest)
        m_client.cellWidgetResized();
    return QTableView::viewportEvent(event);
}

void CTableView::scrollContentsBy(int dx, int dy)
{
    QTableView::scrollContentsBy(dx, dy);
    m_client.cellsMoved();
}

void CTableView::updateGeometries()
{
    QTableView::updateGeometries();
    m_client.cellsMoved();
}

void CTableView::resizeEvent(QResizeEvent* event)
{
    QTableView::resizeEvent(event);
    m_client.viewResized();
}

void CTableView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QTableView::currentChanged(current, previous);
    // The base allows input methods in editable cells only, but composed text filters as well.
    setAttribute(Qt::WA_InputMethodEnabled);
}

template <class Action>
void CTableView::userAction(Action action)
{
    const QPointer<CTableView> guard(this);
    m_client.userActionBegun();
    action();
    if (guard)
        m_client.userActionEnded();
}

void CTableView::mousePressEvent(QMouseEvent* event)
{
    userAction([&] { QTableView::mousePressEvent(event); });
}

void CTableView::mouseMoveEvent(QMouseEvent* event)
{
    userAction([&] { QTableView::mouseMoveEvent(event); });
}

void CTableView::mouseReleaseEvent(QMouseEvent* event)
{
    userAction([&] { QTableView::mouseReleaseEvent(event); });
}

void CTableView::keyPressEvent(QKeyEvent* event)
{
    if (m_client.keyPressed(*event))
        event->accept();
    else
        userAction([&] { QTableView::keyPressEvent(event); });
}

void CTableView::inputMethodEvent(QInputMethodEvent* event)
{
    if (currentIndex().flags().testFlag(Qt::ItemIsEditable))
        QTableView::inputMethodEvent(event);
    else
        m_client.textComposed(*event);
}

void CTableView::contextMenuEvent(QContextMenuEvent* event)
{
    const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
    const QPoint inView = byMouse ? event->pos() : visualRect(currentIndex()).bottomLeft();
    const int column = byMouse ? columnAt(inView.x()) : currentIndex().column();
    m_client.contextMenuAsked(viewport()->mapToGlobal(inView), column);
    event->accept();
}

bool CTableView::focusNextPrevChild(bool next)
{
    QList<QWidget*> stops = m_client.currentRowFocusWidgets();
    stops.prepend(this);
    QWidget* const focus = QApplication::focusWidget();
    const auto isHolder = [focus](QWidget* stop) { return stop == focus; };
    const auto holder = std::find_if(stops.cbegin(), stops.cend(), isHolder);
    const qsizetype at = holder == stops.cend() ? 0 : holder - stops.cbegin();
    const qsizetype target = next ? at + 1 : at - 1;
    if (target >= 0 && target < stops.size()) {
        stops[target]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        return true;
    }
    // The way out starts at the view, because a cell widget stands anywhere in the focus chain.
    if (at > 0)
        setFocus(Qt::OtherFocusReason);
    return QTableView::focusNextPrevChild(next);
}

int CTableView::sizeHintForColumn(int column) const
{
    return std::max(QTableView::sizeHintForColumn(column), m_client.cellWidgetWidth(column));
}

} // namespace KZ
