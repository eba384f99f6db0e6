#include "authsetting/shell/NodeIconRefresher.h"

#include "authsetting/shell/AuthNavigateNode.h"
#include "kit/resources/UiResource.h"

#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace GW {

CNodeIconRefresher::CNodeIconRefresher(QTreeWidget* tree) : m_tree(tree) {}

void CNodeIconRefresher::onUiResourceChanged()
{
    for (QTreeWidgetItemIterator item(m_tree); *item; ++item) {
        if (auto* node = dynamic_cast<CAuthNavigateNode*>(*item))
            node->setIcon(0, KZ::CUiResource::getIcon(node->iconKey()));
    }
}

} // namespace GW
