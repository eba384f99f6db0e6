#include "authsetting/shell/NavigatorUpdate.h"

#include "authsetting/shell/AuthNavigateNode.h"
#include "authsetting/shell/AuthSettingNavigator.h"
#include "authsetting/shell/NavigatorNodes.h"

#include <climits>
#include <utility>

namespace GW {

namespace {

void refresh(CAuthNavigateNode* node, const QString& text, const QString& iconKey)
{
    if (node->text(0) != text)
        node->setChildName(text);
    if (node->iconKey() != iconKey)
        node->setIconKey(iconKey);
}

} // namespace

CNavigatorUpdate::CNavigatorUpdate(CAuthSettingNavigator* navigator) : m_navigator(navigator)
{
    for (std::unique_ptr<QTreeWidgetItem>& item : navigator->nodes().takeEarlier()) {
        if (auto* node = dynamic_cast<CAuthNavigateNode*>(item.get())) {
            item.release();
            m_earlier[node->pageId()].reset(node);
        }
    }
}

CNavigatorUpdate::~CNavigatorUpdate()
{
    for (auto& [page, branch] : m_branches)
        finish(&branch);
}

void CNavigatorUpdate::addTop(const QString& text, int pageId, const QString& iconKey)
{
    const auto earlier = m_earlier.find(pageId);
    Branch& branch = m_branches[pageId];
    if (earlier != m_earlier.end() && earlier->second->text(0) == text &&
        earlier->second->iconKey() == iconKey) {
        branch.top = std::move(earlier->second);
        m_earlier.erase(earlier);
    } else {
        branch.top = std::make_unique<CAuthNavigateNode>(pageId, INT_MAX, iconKey, QString(),
                                                         QStringList(text));
    }
    m_order.push_back(pageId);
}

void CNavigatorUpdate::addChild(const QString& text, int pageId, int subPageId,
                                const QString& iconKey, const QString& key)
{
    Branch& branch = m_branches.at(pageId);
    if (!branch.rearranged) {
        if (CAuthNavigateNode* node = keptChild(branch, subPageId, key)) {
            ++branch.kept;
            refresh(node, text, iconKey);
            return;
        }
        rearrange(&branch);
    }
    CAuthNavigateNode* node = branch.spare.take(key);
    if (node && node->subPageId() != subPageId)
        delete std::exchange(node, nullptr);
    if (node)
        refresh(node, text, iconKey);
    else
        node = CAuthNavigateNode::newChild(pageId, subPageId, iconKey, key, text);
    branch.children.append(node);
}

CAuthNavigateNode* CNavigatorUpdate::keptChild(const Branch& branch, int subPageId,
                                               const QString& key)
{
    auto* node = dynamic_cast<CAuthNavigateNode*>(branch.top->child(branch.kept));
    return node && node->subPageId() == subPageId && node->key() == key ? node : nullptr;
}

void CNavigatorUpdate::rearrange(Branch* branch)
{
    branch->rearranged = true;
    branch->children = branch->top->takeChildren();
    for (qsizetype index = branch->kept; index < branch->children.size(); ++index) {
        QTreeWidgetItem* item = branch->children.at(index);
        auto* node = dynamic_cast<CAuthNavigateNode*>(item);
        if (node && !branch->spare.contains(node->key()))
            branch->spare.insert(node->key(), node);
        else
            delete item;
    }
    branch->children.resize(branch->kept);
}

void CNavigatorUpdate::finish(Branch* branch)
{
    if (!branch->top)
        return;
    // Earlier children at the end that nobody named.
    if (!branch->rearranged && branch->kept < branch->top->childCount())
        rearrange(branch);
    qDeleteAll(std::exchange(branch->spare, {}));
    branch->top->addChildren(std::exchange(branch->children, {}));
    branch->top->noteChildren();
}

void CNavigatorUpdate::show()
{
    QList<CAuthNavigateNode*> tops;
    for (const int page : m_order) {
        finish(&m_branches[page]);
        tops.append(m_branches[page].top.release());
    }
    m_navigator->addTopNodes(tops);
}

} // namespace GW
