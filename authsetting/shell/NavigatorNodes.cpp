#include "authsetting/shell/NavigatorNodes.h"

#include "authsetting/shell/AuthNavigateNode.h"

#include <QSignalBlocker>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <utility>

namespace GW {

CNavigatorNodes::CNavigatorNodes(QTreeWidget* tree)
    : m_tree(tree), m_connection(QObject::connect(tree->model(), &QAbstractItemModel::dataChanged,
                                                  [this] { m_changed = true; }))
{
}

CNavigatorNodes::~CNavigatorNodes()
{
    QObject::disconnect(m_connection);
}

void CNavigatorNodes::setAside()
{
    m_earlier.clear();
    // Taken out one by one the nodes would pass the current one on among themselves.
    m_tree->selectionModel()->reset();
    const QList<QTreeWidgetItem*> nodes = m_tree->invisibleRootItem()->takeChildren();
    for (QTreeWidgetItem* node : nodes)
        m_earlier.emplace_back(node);
    if (std::exchange(m_changed, false))
        m_earlier.clear();
}

CNavigatorNodes::Nodes CNavigatorNodes::takeEarlier()
{
    return std::exchange(m_earlier, {});
}

void CNavigatorNodes::dropEarlier()
{
    m_earlier.clear();
}

void CNavigatorNodes::onUiResourceChanged()
{
    // One repaint does for all.
    const QSignalBlocker blocker(m_tree->model());
    for (QTreeWidgetItemIterator item(m_tree); *item; ++item) {
        if (auto* node = dynamic_cast<CAuthNavigateNode*>(*item))
            node->setIconKey(node->iconKey());
    }
    m_tree->viewport()->update();
}

} // namespace GW
