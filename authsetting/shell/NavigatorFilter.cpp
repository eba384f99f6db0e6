#include "authsetting/shell/NavigatorFilter.h"

#include "authsetting/shell/AuthNavigateNode.h"
#include "authsetting/shell/NodeMarkDelegate.h"
#include "kit/resources/KitStyle.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/EditorMenu.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace GW {

CNavigatorFilter::CNavigatorFilter(QTreeWidget* navigator)
    : QObject(navigator), m_navigator(navigator), m_edit(new QLineEdit(navigator->header())),
      m_delegate(new CNodeMarkDelegate(this))
{
    // The header is the one part of a tree that makes room for itself above the nodes.
    navigator->setHeaderLabel(QString());
    navigator->header()->installEventFilter(this);
    navigator->setItemDelegate(m_delegate);
    navigator->window()->installEventFilter(this);

    m_edit->setObjectName(QStringLiteral("halden_navigator_filter"));
    m_edit->setPlaceholderText(QStringLiteral("输入以查找"));
    m_edit->setAccessibleName(QStringLiteral("查找"));
    m_edit->setToolTip(QStringLiteral("↑、↓ 选择，Enter 打开，Esc 关闭"));
    m_edit->setContextMenuPolicy(Qt::CustomContextMenu);
    m_edit->installEventFilter(this);
    KZ::applyKitStyle(m_edit);
    connect(m_edit, &QLineEdit::textChanged, this, &CNavigatorFilter::takeText);
    connect(m_edit, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { KZ::showEditorMenu(m_edit, m_edit->mapToGlobal(at)); });
}

bool CNavigatorFilter::isOpen() const
{
    return !m_navigator->isHeaderHidden();
}

QTreeWidgetItem* CNavigatorFilter::mark() const
{
    return m_navigator->itemFromIndex(m_delegate->mark());
}

void CNavigatorFilter::open()
{
    if (!isOpen()) {
        const int space = KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_list_space"));
        const int height = KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_editor_height"));
        m_navigator->header()->setFixedHeight(height + space);
        m_navigator->setHeaderHidden(false);
        placeEdit();
        if (QTreeWidgetItem* current = m_navigator->currentItem())
            m_navigator->scrollToItem(current);
    }
    m_edit->selectAll();
    m_edit->setFocus(Qt::ShortcutFocusReason);
}

void CNavigatorFilter::close()
{
    if (!isOpen())
        return;
    if (m_edit->window()->focusWidget() == m_edit)
        m_edit->window()->setFocus(Qt::OtherFocusReason);
    m_navigator->setHeaderHidden(true);
    m_edit->clear();
    setMark(nullptr);
    if (QTreeWidgetItem* current = m_navigator->currentItem())
        m_navigator->scrollToItem(current);
    Q_EMIT closed();
}

void CNavigatorFilter::takeText()
{
    if (m_edit->text().trimmed() == m_text)
        return;
    m_text = m_edit->text().trimmed();
    narrowBelow(m_navigator->invisibleRootItem());
    setMark(m_text.isEmpty() ? nullptr : findMatch(false));
    if (QTreeWidgetItem* marked = mark())
        m_navigator->scrollToItem(marked);
}

void CNavigatorFilter::narrow()
{
    if (!m_text.isEmpty())
        narrowBelow(m_navigator->invisibleRootItem());
    if (!m_isMarked)
        return;
    QTreeWidgetItem* same = findMatch(true);
    setMark(same || m_text.isEmpty() ? same : findMatch(false));
}

bool CNavigatorFilter::isMatch(const QTreeWidgetItem* item) const
{
    return item->text(0).contains(m_text, Qt::CaseInsensitive);
}

bool CNavigatorFilter::narrowBelow(QTreeWidgetItem* parent)
{
    const QModelIndex parentIndex = m_navigator->indexFromItem(parent);
    bool anyShown = false;
    for (int row = 0; row < parent->childCount(); ++row) {
        QTreeWidgetItem* item = parent->child(row);
        const bool holdsMatch = item->childCount() > 0 && narrowBelow(item);
        const bool shown = isMatch(item) || holdsMatch;
        anyShown = anyShown || shown;
        if (m_navigator->isRowHidden(row, parentIndex) == shown)
            m_navigator->setRowHidden(row, parentIndex, !shown);
    }
    return anyShown;
}

QTreeWidgetItem* CNavigatorFilter::findMatch(bool atMarkedPlace) const
{
    for (QTreeWidgetItemIterator item(m_navigator); *item; ++item) {
        if (!isMatch(*item))
            continue;
        const auto* node = dynamic_cast<const CAuthNavigateNode*>(*item);
        if (!atMarkedPlace || (node && node->pageId() == m_markedPage &&
                               node->subPageId() == m_markedSubPage && node->key() == m_markedKey))
            return *item;
    }
    return nullptr;
}

void CNavigatorFilter::setMark(QTreeWidgetItem* item)
{
    m_isMarked = item;
    m_delegate->setMark(item ? m_navigator->indexFromItem(item) : QModelIndex());
    if (const auto* node = dynamic_cast<const CAuthNavigateNode*>(item)) {
        m_markedPage = node->pageId();
        m_markedSubPage = node->subPageId();
        m_markedKey = node->key();
    }
    // Who does not see the mark hears what Enter would choose.
    m_edit->setAccessibleDescription(item ? item->text(0) : QString());
    m_navigator->viewport()->update();
}

void CNavigatorFilter::moveMark(bool down)
{
    QTreeWidgetItem* from = mark() ? mark() : m_navigator->currentItem();
    if (!from)
        from = m_navigator->topLevelItem(0);
    QTreeWidgetItem* to = from;
    while (to) {
        to = down ? m_navigator->itemBelow(to) : m_navigator->itemAbove(to);
        if (to && isMatch(to)) {
            setMark(to);
            m_navigator->scrollToItem(to);
            return;
        }
    }
}

void CNavigatorFilter::choose()
{
    QTreeWidgetItem* chosen = mark();
    if (!chosen)
        return;
    close();
    m_navigator->setCurrentItem(chosen);
}

bool CNavigatorFilter::handleKey(int key)
{
    switch (key) {
    case Qt::Key_Escape:
        close();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        choose();
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
        moveMark(key == Qt::Key_Down);
        return true;
    default:
        return false;
    }
}

bool CNavigatorFilter::eventFilter(QObject* watched, QEvent* event)
{
    const bool isKey = event->type() == QEvent::KeyPress;
    if (watched == m_navigator->header()) {
        if (event->type() == QEvent::Resize)
            placeEdit();
        // A key that the editor does not know must not move the tree's current node.
        return isKey;
    }
    if (isKey && isOpen()) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        // From wherever the user is, Esc takes back the box before the dialog.
        if (watched == m_edit || key == Qt::Key_Escape)
            return handleKey(key);
    }
    return QObject::eventFilter(watched, event);
}

void CNavigatorFilter::placeEdit()
{
    const int space = KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_list_space")) / 2;
    m_edit->setGeometry(m_navigator->header()->rect().adjusted(space, space, -space, -space));
}

} // namespace GW
