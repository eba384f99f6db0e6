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
}

CAuthNavigateNode::~CAuthNavigateNode() = default;

CAuthNavigateNode* CAuthNavigateNode::newChild(int pageId, int subPageId, const QString& iconKey,
                                               const QString& key, const QString& text)
{
    auto* node = new CAuthNavigateNode(pageId, subPageId, iconKey, key, {text});
    node->setToolTip(0, toolTipOf(text));
    // Otherwise the tree notes of each that it is expanded, which costs more than the node.
    node->setFlags(node->flags() | Qt::ItemNeverHasChildren);
    return node;
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
