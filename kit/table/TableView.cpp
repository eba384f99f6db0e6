#include "kit/table/TableView.h"

#include "kit/resources/KitStyle.h"
#include "kit/resources/StylePainter.h"
#include "kit/resources/UiResource.h"
#include "kit/table/CellEditor.h"
#include "kit/table/HeaderCorner.h"
#include "kit/table/TableViewClient.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QInputMethodEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <QStyleOption>

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
    verticalHeader()->setMinimumSectionSize(1);
    QHeaderView* const header = horizontalHeader();
    header->setSectionsMovable(true);
    header->setSectionsClickable(true);
    header->setHighlightSections(false);
    header->setSortIndicatorClearable(true);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    addScrollBarWidget(new CHeaderCorner(header, this), Qt::AlignTop);
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
    const QPointer<CTableView> guard(this);
    if (event->type() == QEvent::Paint)
        m_client.aboutToPaint();
    if (!guard)
        return true;
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape && m_client.needsEscape()) {
        event->accept();
        return true;
    }
    return QTableView::event(event);
}

bool CTableView::viewportEvent(QEvent* event)
{
    const QPointer<CTableView> guard(this);
    if (event->type() == QEvent::Paint)
        m_client.aboutToPaint();
    else if (event->type() == QEvent::LayoutRequest)
        m_client.cellWidgetResized();
    return guard ? QTableView::viewportEvent(event) : true;
}

void CTableView::paintEvent(QPaintEvent* event)
{
    paintGrounds(event->rect());
    QTableView::paintEvent(event);
}

/// Grounds of the rows over the whole width, also where no column is, and of the selection.
void CTableView::paintGrounds(const QRect& room)
{
    const int first = rowAt(room.top());
    if (first < 0)
        return;
    QPainter painter(viewport());
    const bool isWholeRow = selectionBehavior() == QAbstractItemView::SelectRows;
    const QPalette::ColorGroup group = !viewport()->isEnabled() ? QPalette::Disabled
                                       : isActiveWindow()       ? QPalette::Active
                                                                : QPalette::Inactive;
    const QBrush alternate = palette().brush(group, QPalette::AlternateBase);
    const QColor highlight =
        CUiResource::getColor(group == QPalette::Disabled ? QStringLiteral("clr_hover")
                                                          : QStringLiteral("clr_selection"));
    QStyleOption option;
    option.initFrom(viewport());
    const QModelIndex root = rootIndex();
    for (int row = first; row < model()->rowCount(); ++row) {
        const int top = rowViewportPosition(row);
        if (top > room.bottom())
            break;
        const QRect ground(0, top, viewport()->width(), rowHeight(row));
        if (isWholeRow && selectionModel()->isSelected(model()->index(row, 0, root))) {
            painter.fillRect(ground, highlight);
            CStylePainter::rowMark(&painter, option, ground);
        } else if (alternatingRowColors() && row % 2 == 1)
            painter.fillRect(ground, alternate);
        for (int column = 0; !isWholeRow && column < model()->columnCount(); ++column) {
            const QModelIndex index = model()->index(row, column, root);
            if (selectionModel()->isSelected(index))
                painter.fillRect(visualRect(index), highlight);
        }
    }
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
    // A click may come from the header, whose coordinates are its own.
    const QPoint at = byMouse ? event->globalPos()
                              : viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft());
    const int column =
        byMouse ? columnAt(viewport()->mapFromGlobal(at).x()) : currentIndex().column();
    m_client.contextMenuAsked(at, column);
    event->accept();
}

bool CTableView::focusNextPrevChild(bool next)
{
    const QWidget* const focus = QApplication::focusWidget();
    if (focus && viewport()->isAncestorOf(focus)) {
        // The way out starts at the view, because a row's widget stands anywhere in the focus
        // chain; one that was hidden or disabled leaves the focus there.
        const bool isLeaving = focus->isVisible() && focus->isEnabled();
        const QPointer<CTableView> guard(this);
        setFocus(Qt::OtherFocusReason);
        if (!guard || !isLeaving)
            return true;
    }
    return QTableView::focusNextPrevChild(next);
}

bool CTableView::editCell(const QModelIndex& index)
{
    return edit(index, QAbstractItemView::AllEditTriggers, nullptr);
}

int CTableView::sizeHintForColumn(int column) const
{
    return std::max(QTableView::sizeHintForColumn(column), m_client.cellWidgetWidth(column));
}

} // namespace KZ
