#pragma once

#include <QIcon>
#include <QString>
#include <QTreeWidget>
#include <QVector>

namespace bench {

/// The finished contents of a tree of two levels: what another tree needs to show the same.
struct TreeItems
{
    struct Item
    {
        QString text;
        QIcon icon;
        QVector<Item> children;
    };

    /// The same items with texts that nothing else shares.
    TreeItems madeAnew() const;

    QVector<Item> items;
    QFont font;
};

/// Reads the contents of a tree back.
TreeItems readTree(const QTreeWidget* tree);

/// A QTreeWidget filled in bulk, as a careful user would: every item is finished before the tree
/// hears of it.
class BareTree : public QTreeWidget
{
public:
    explicit BareTree(QWidget* parent = nullptr);

    /// Takes finished items in the place of those there are, which go, and expands them.
    void reload(const TreeItems& contents);
};

} // namespace bench
