#pragma once

#include <QString>
#include <QStringList>
#include <QTreeWidgetItem>

namespace GW {

/// A node of the dialog's tree: it names the place that selecting it shows.
class CAuthNavigateNode : public QTreeWidgetItem
{
public:
    /// `subPageId` is INT_MAX for a top-level node; `texts` are the column texts.
    CAuthNavigateNode(int pageId, int subPageId, QString iconKey, QString key,
                      const QStringList& texts);
    ~CAuthNavigateNode() override;

    /// A node to stand under another: it has no children of its own and tells its whole name, which
    /// the tree may cut, in its tool tip.
    static CAuthNavigateNode* newChild(int pageId, int subPageId, const QString& iconKey,
                                       const QString& key, const QString& text);

    int pageId() const { return m_pageId; }
    int subPageId() const { return m_subPageId; }
    /// Account key or sub-user identifier of a child node, empty for a top-level node.
    const QString& key() const { return m_key; }
    /// Resource key of the icon.
    const QString& iconKey() const { return m_iconKey; }

    /// Looks the icon up, also when the key stays.
    void setIconKey(const QString& iconKey);
    /// Gives a node made by newChild() another name.
    void setChildName(const QString& text);
    /// Takes note of whether the node has children; call it after the first came or the last went.
    void noteChildren();

private:
    int m_pageId;
    int m_subPageId;
    QString m_key;
    QString m_iconKey;
};

} // namespace GW
