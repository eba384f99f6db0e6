#include "authsetting/shell/AuthNavigateNode.h"

#include "kit/resources/UiResource.h"

#include <utility>

namespace GW {

CAuthNavigateNode::CAuthNavigateNode(int pageId, int subPageId, QString iconKey, QString key,
                                     const QStringList& texts)
    : QTreeWidgetItem(texts, Type), m_pageId(pageId), m_subPageId(subPageId), m_key(std::move(key)),
      m_iconKey(std::move(iconKey))
{
    setIcon(0, KZ::CUiResource::getIcon(m_iconKey));
}

CAuthNavigateNode::~CAuthNavigateNode() = default;

} // namespace GW
