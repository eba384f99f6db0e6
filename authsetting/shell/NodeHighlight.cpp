#include "authsetting/shell/NodeHighlight.h"

#include <QMouseEvent>
#include <QTreeWidget>

namespace GW {

CNodeHighlight::CNodeHighlight(QTreeWidget* tree) : QObject(tree), m_tree(tree)
{
    tree->viewport()->installEventFilter(this);
    connect(tree, &QTreeWidget::itemSelectionChanged, this, &CNodeHighlight::highlightSoon);
}

bool CNodeHighlight::eventFilter(QObject* watched, QEvent* event)
{
    const bool isPress =
        event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (isPress &&
        !m_tree->indexAt(static_cast<QMouseEvent*>(event)->position().toPoint()).isValid())
        return true;
    return QObject::eventFilter(watched, event);
}

void CNodeHighlight::highlightSoon()
{
    // A change of the current node passes through states without a selection, too.
    const auto highlight = [this] {
        QTreeWidgetItem* current = m_tree->currentItem();
        if (current && !current->isSelected())
            current->setSelected(true);
    };
    QMetaObject::invokeMethod(this, highlight, Qt::QueuedConnection);
}

} // namespace GW
