#include "authsetting/shell/AuthSettingNavigator.h"

#include "authsetting/shell/AuthNavigateNode.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/shell/NodeHighlight.h"
#include "authsetting/shell/NodeIconRefresher.h"

#include <climits>

namespace GW {

CAuthSettingNavigator::CAuthSettingNavigator(QWidget* parent)
    : CEventWidgetT<QTreeWidget>(parent),
      m_iconRefresher(std::make_unique<CNodeIconRefresher>(this))
{
    setHeaderHidden(true);
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
    auto* node = new CAuthNavigateNode(pageId, subPageId, iconKey, key, {text});
    // A name wider than the tree ends in an ellipsis there; it is never markup.
    node->setToolTip(0, QStringLiteral("<qt>") + text.toHtmlEscaped() + QStringLiteral("</qt>"));
    top->addChild(node);
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
    clear();
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
