#include "authsetting/shell/AuthSettingNavigator.h"

#include "authsetting/shell/AuthNavigateNode.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/shell/NavigatorNodes.h"
#include "authsetting/shell/NodeHighlight.h"

#include <climits>

namespace GW {

CAuthSettingNavigator::CAuthSettingNavigator(QWidget* parent)
    : CEventWidgetT<QTreeWidget>(parent), m_nodes(std::make_unique<CNavigatorNodes>(this))
{
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setFocusPolicy(Qt::NoFocus);
    new CNodeHighlight(this);
    connect(this, &QTreeWidget::currentItemChanged, this,
            &CAuthSettingNavigator::onCurrentItemChanged);
}

CAuthSettingNavigator::~CAuthSettingNavigator() = default;

void CAuthSettingNavigator::addTopNode(QString text, int pageId, QString iconKey)
{
    auto* node = new CAuthNavigateNode(pageId, INT_MAX, iconKey, QString(), {text});
    addTopLevelItem(node);
    m_topNodes.insert(pageId, node);
}

void CAuthSettingNavigator::addChildNode(QString text, int pageId, int subPageId, QString iconKey,
                                         QString key)
{
    CAuthNavigateNode* top = m_topNodes.value(pageId);
    if (!top)
        return;
    top->addChild(CAuthNavigateNode::newChild(pageId, subPageId, iconKey, key, text));
    top->noteChildren();
}

void CAuthSettingNavigator::activeNode(int pageId)
{
    if (CAuthNavigateNode* top = m_topNodes.value(pageId))
        setCurrentItem(top);
}

void CAuthSettingNavigator::activeNode(int pageId, int subPageId, QString key)
{
    CAuthNavigateNode* top = m_topNodes.value(pageId);
    if (!top)
        return;
    for (int index = 0; index < top->childCount(); ++index) {
        auto* node = dynamic_cast<CAuthNavigateNode*>(top->child(index));
        if (node && node->subPageId() == subPageId && node->key() == key) {
            setCurrentItem(node);
            return;
        }
    }
}

void CAuthSettingNavigator::clearNodes()
{
    m_topNodes.clear();
    m_nodes->setAside();
}

void CAuthSettingNavigator::addTopNodes(const QList<CAuthNavigateNode*>& nodes)
{
    for (CAuthNavigateNode* node : nodes)
        m_topNodes.insert(node->pageId(), node);
    addTopLevelItems(QList<QTreeWidgetItem*>(nodes.begin(), nodes.end()));
}

void CAuthSettingNavigator::stepToNext()
{
    stepTo(currentItem() ? itemBelow(currentItem()) : topLevelItem(0));
}

void CAuthSettingNavigator::stepToPrevious()
{
    stepTo(currentItem() ? itemAbove(currentItem()) : topLevelItem(0));
}

void CAuthSettingNavigator::stepTo(QTreeWidgetItem* item)
{
    if (item)
        setCurrentItem(item);
}

void CAuthSettingNavigator::onCurrentItemChanged(QTreeWidgetItem* current, QTreeWidgetItem*)
{
    if (const auto* node = dynamic_cast<CAuthNavigateNode*>(current))
        deliverEvent(EVENT_SHOW_PAGE, node->pageId(), node->subPageId(), node->key(), nullptr);
}

} // namespace GW
