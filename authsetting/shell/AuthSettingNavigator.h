#pragma once

#include "authsetting/AuthSettingExport.h"
#include "kit/events/EventWidget.h"

#include <QMap>
#include <QString>
#include <QTreeWidget>

#include <memory>

namespace GW {

class CAuthNavigateNode;
class CNavigatorNodes;

/// The tree on the left of the dialog. Selecting a node delivers EVENT_SHOW_PAGE for its place.
///
/// A host's own filler (CAuthSettingDialog::setNavigatorFiller) gets it empty and adds nodes with
/// addTopNode() and addChildNode(), the only functions that are exported. GUI thread only.
class CAuthSettingNavigator : public KZ::CEventWidgetT<QTreeWidget>
{
    Q_OBJECT

public:
    explicit CAuthSettingNavigator(QWidget* parent);
    ~CAuthSettingNavigator() override;

    /// Adds the top-level node of a page; a later one for the same page takes over its children.
    AUTHSETTING_EXPORT void addTopNode(QString text, int pageId, QString iconKey);

    /// Adds a node under the page's top-level node; nothing when the page has none. `key` is the
    /// account key or sub-user identifier that selecting the node shows.
    AUTHSETTING_EXPORT void addChildNode(QString text, int pageId, int subPageId, QString iconKey,
                                         QString key);

    /// Makes the top-level node of a page the current item; nothing when the page has none.
    void activeNode(int pageId);

    /// Makes the first child of the page's node with this sub-page and key the current item;
    /// nothing when there is none.
    void activeNode(int pageId, int subPageId, QString key);

    /// Empties the tree and forgets its nodes.
    void clearNodes();

    /// Adds finished top-level nodes, of different pages, with their children; they become the
    /// tree's.
    void addTopNodes(const QList<CAuthNavigateNode*>& nodes);

    /// The nodes as a whole, those of the emptied tree included.
    CNavigatorNodes& nodes() const { return *m_nodes; }

    /// Makes the visible node below or above the current one the current item; the first node when
    /// none is current, nothing at the end of the tree.
    void stepToNext();
    void stepToPrevious();

private Q_SLOTS:
    void onCurrentItemChanged(QTreeWidgetItem* current, QTreeWidgetItem* previous);

private:
    void stepTo(QTreeWidgetItem* item);

    QMap<int, CAuthNavigateNode*> m_topNodes;
    std::unique_ptr<CNavigatorNodes> m_nodes;
};

} // namespace GW
