#pragma once

#include "kit/resources/UiResourceChangeHandler.h"

#include <QMetaObject>

#include <memory>
#include <vector>

class QTreeWidget;
class QTreeWidgetItem;

namespace GW {

/// What the navigator knows of its nodes as a whole: it gives them their icons anew when the theme
/// changes, and keeps those of an emptied tree for the filler that follows.
class CNavigatorNodes : public KZ::CUiResourceChangeHandler
{
public:
    using Nodes = std::vector<std::unique_ptr<QTreeWidgetItem>>;

    /// `tree` outlives the object.
    explicit CNavigatorNodes(QTreeWidget* tree);
    ~CNavigatorNodes() override;

    /// Empties the tree and keeps its nodes, unless somebody changed one in the tree: whatever he
    /// gave it, a fresh node does not have.
    void setAside();
    /// Hands the kept top-level nodes over with their children; none the second time.
    Nodes takeEarlier();
    void dropEarlier();

    void onUiResourceChanged() override;

private:
    QTreeWidget* const m_tree;
    Nodes m_earlier;
    bool m_changed = false;
    QMetaObject::Connection m_connection;
};

} // namespace GW
