#pragma once

#include <QObject>

class QTreeWidget;

namespace GW {

/// Keeps the current node of a tree highlighted: neither a click beside the nodes nor one that
/// takes the selection back leaves the tree without a sign of which page is shown. The tree owns
/// it.
class CNodeHighlight : public QObject
{
public:
    explicit CNodeHighlight(QTreeWidget* tree);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void highlightSoon();

    QTreeWidget* m_tree;
};

} // namespace GW
