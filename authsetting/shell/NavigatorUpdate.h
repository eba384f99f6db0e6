#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <map>
#include <memory>
#include <vector>

class QTreeWidgetItem;

namespace GW {

class CAuthNavigateNode;
class CAuthSettingNavigator;

/// Fills the navigator at once: the nodes are named one after the other while the tree does not
/// hear of them, and those of the tree before it was emptied are taken up again where they are
/// named anew. A reload that changes nothing makes no node.
class CNavigatorUpdate
{
public:
    explicit CNavigatorUpdate(CAuthSettingNavigator* navigator);
    ~CNavigatorUpdate();
    CNavigatorUpdate(const CNavigatorUpdate&) = delete;
    CNavigatorUpdate& operator=(const CNavigatorUpdate&) = delete;

    /// Names the top-level node of a page, once per page.
    void addTop(const QString& text, int pageId, const QString& iconKey);
    /// Names a node under the page's top-level node, which has to be named before.
    void addChild(const QString& text, int pageId, int subPageId, const QString& iconKey,
                  const QString& key);
    /// Puts the named nodes into the tree, behind those that it has. To be called once, at the end.
    void show();

private:
    struct Branch
    {
        std::unique_ptr<CAuthNavigateNode> top;
        /// How many of the earlier children were named again in their order.
        int kept = 0;
        /// Whether another order, or another child, was met: children then holds the new list.
        bool rearranged = false;
        QList<QTreeWidgetItem*> children;
        /// Earlier children that were not named yet.
        QHash<QString, CAuthNavigateNode*> spare;
    };

    static CAuthNavigateNode* keptChild(const Branch& branch, int subPageId, const QString& key);
    static void rearrange(Branch* branch);
    static void finish(Branch* branch);

    CAuthSettingNavigator* const m_navigator;
    /// Top-level nodes of the earlier tree, by page.
    std::map<int, std::unique_ptr<CAuthNavigateNode>> m_earlier;
    std::map<int, Branch> m_branches;
    std::vector<int> m_order;
};

} // namespace GW
