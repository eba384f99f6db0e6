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

    int pageId() const { return m_pageId; }
    int subPageId() const { return m_subPageId; }
    /// Account key or sub-user identifier of a child node, empty for a top-level node.
    QString key() const { return m_key; }
    /// Resource key of the icon.
    QString iconKey() const { return m_iconKey; }

private:
    int m_pageId;
    int m_subPageId;
    QString m_key;
    QString m_iconKey;
};

} // namespace GW
