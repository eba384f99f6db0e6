#include "authsetting/shell/AuthNavigateNode.h"

#include "kit/resources/UiResource.h"

#include <QStringBuilder>

#include <algorithm>
#include <utility>

namespace GW {

namespace {

// A name wider than the tree ends in an ellipsis there; it is never markup.
QString toolTipOf(const QString& name)
{
    const bool plain = std::none_of(name.begin(), name.end(), [](QChar c) {
        return c == u'<' || c == u'>' || c == u'&' || c == u'"';
    });
    return QStringLiteral("<qt>") % (plain ? name : name.toHtmlEscaped()) % QStringLiteral("</qt>");
}

} // namespace

CAuthNavigateNode::CAuthNavigateNode(int pageId, int subPageId, QString iconKey, QString key,
                                     const QStringList& texts)
    : QTreeWidgetItem(texts, Type), m_pageId(pageId), m_subPageId(subPageId), m_key(std::move(key)),
      m_iconKey(std::move(iconKey))
{
    setIcon(0, KZ::CUiResource::getIcon(m_iconKey));
    noteChildren();
}

CAuthNavigateNode::~CAuthNavigateNode() = default;

CAuthNavigateNode* CAuthNavigateNode::newChild(int pageId, int subPageId, const QString& iconKey,
                                               const QString& key, const QString& text)
{
    auto* node = new CAuthNavigateNode(pageId, subPageId, iconKey, key, {text});
    node->setToolTip(0, toolTipOf(text));
    return node;
}

void CAuthNavigateNode::noteChildren()
{
    // A node that has nothing to open would be read as an open one, and the tree would note of it
    // that it is expanded, which costs more than the node.
    const bool has = childCount() > 0;
    if (flags().testFlag(Qt::ItemNeverHasChildren) == has)
        setFlags(flags().setFlag(Qt::ItemNeverHasChildren, !has));
}

void CAuthNavigateNode::setIconKey(const QString& iconKey)
{
    m_iconKey = iconKey;
    setIcon(0, KZ::CUiResource::getIcon(m_iconKey));
}

void CAuthNavigateNode::setChildName(const QString& text)
{
    setText(0, text);
    setToolTip(0, toolTipOf(text));
}

} // namespace GW
