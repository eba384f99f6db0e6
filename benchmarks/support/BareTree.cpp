#include "benchmarks/support/BareTree.h"

namespace bench {

namespace {

TreeItems::Item readItem(const QTreeWidgetItem* item)
{
    TreeItems::Item result{item->text(0), item->icon(0), {}};
    result.children.reserve(item->childCount());
    for (int child = 0; child < item->childCount(); ++child)
        result.children.append(readItem(item->child(child)));
    return result;
}

QTreeWidgetItem* newItem(const TreeItems::Item& contents)
{
    auto* item = new QTreeWidgetItem;
    item->setText(0, contents.text);
    item->setIcon(0, contents.icon);
    QList<QTreeWidgetItem*> children;
    children.reserve(contents.children.size());
    for (const TreeItems::Item& child : contents.children)
        children.append(newItem(child));
    item->addChildren(children);
    return item;
}

void copyTexts(QVector<TreeItems::Item>* items)
{
    for (TreeItems::Item& item : *items) {
        item.text = QString(item.text.constData(), item.text.size());
        copyTexts(&item.children);
    }
}

} // namespace

TreeItems TreeItems::madeAnew() const
{
    TreeItems made = *this;
    copyTexts(&made.items);
    return made;
}

TreeItems readTree(const QTreeWidget* tree)
{
    TreeItems result;
    result.font = tree->font();
    for (int top = 0; top < tree->topLevelItemCount(); ++top)
        result.items.append(readItem(tree->topLevelItem(top)));
    return result;
}

BareTree::BareTree(QWidget* parent) : QTreeWidget(parent)
{
    setHeaderHidden(true);
    setUniformRowHeights(true);
}

void BareTree::reload(const TreeItems& contents)
{
    clear();
    QList<QTreeWidgetItem*> items;
    for (const TreeItems::Item& item : contents.items)
        items.append(newItem(item));
    addTopLevelItems(items);
    expandAll();
}

} // namespace bench
