#include "kit/widgets/WidgetList.h"

#include "kit/resources/UiResource.h"
#include "kit/widgets/KeptSizeItem.h"

#include <QBoxLayout>

namespace KZ {

namespace {

constexpr int ANCHOR_LEADING = 1;
constexpr int ANCHOR_TRAILING = 2;

/// Whether a widget of fixed length takes the whole breadth of its list: rows, panels and views
/// do, editors, buttons and texts keep their own size.
bool fillsAcross(const QWidget* widget, Qt::Orientation along, bool sized)
{
    const QSizePolicy policy = widget->sizePolicy();
    const QSizePolicy::Policy across =
        along == Qt::Horizontal ? policy.verticalPolicy() : policy.horizontalPolicy();
    if (across == QSizePolicy::Fixed || across == QSizePolicy::Maximum)
        return false;
    if (qobject_cast<const CBaseWidget*>(widget))
        return true;
    return !sized && (across & QSizePolicy::ExpandFlag);
}

} // namespace

CWidgetList::CWidgetList(Qt::Orientation orientation, QWidget* parent)
    : CBaseWidget(parent), m_orientation(orientation),
      m_layout(new QBoxLayout(
          orientation == Qt::Horizontal ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(CUiResource::getSize(QStringLiteral("gw_siz_kit_list_space")));
    // Room that nobody wants stays at the end instead of spreading between the widgets.
    m_layout->addItem(orientation == Qt::Horizontal
                          ? new QSpacerItem(0, 0, QSizePolicy::Expanding, QSizePolicy::Minimum)
                          : new QSpacerItem(0, 0, QSizePolicy::Minimum, QSizePolicy::Expanding));
}

void CWidgetList::setMargin(int left, int top, int right, int bottom)
{
    m_layout->setContentsMargins(left, top, right, bottom);
}

void CWidgetList::setSpacing(int spacing)
{
    m_layout->setSpacing(spacing);
}

void CWidgetList::setSpacingKey(const QString& sizeKey)
{
    m_spacingKey = sizeKey;
    setSpacing(CUiResource::getSize(sizeKey));
}

void CWidgetList::addFixWidget(QWidget* widget)
{
    const bool sized = widget->testAttribute(Qt::WA_Resized);
    const QSize kept = sized ? widget->size() : QSize();
    const bool hidden = widget->testAttribute(Qt::WA_WState_ExplicitShowHide) && widget->isHidden();
    if (widget->parentWidget() != this)
        widget->setParent(this);
    m_layout->insertItem(end(), new CKeptSizeItem(widget, m_orientation,
                                                  fillsAcross(widget, m_orientation, sized), kept));
    if (!hidden)
        widget->show();
}

void CWidgetList::addStretchWidget(QWidget* widget, int stretch, int anchor, bool hidden)
{
    const bool across = m_orientation == Qt::Horizontal;
    Qt::Alignment alignment;
    const bool leading = anchor & ANCHOR_LEADING;
    const bool trailing = anchor & ANCHOR_TRAILING;
    if (leading && !trailing)
        alignment = across ? Qt::AlignTop : Qt::AlignLeft;
    else if (trailing && !leading)
        alignment = across ? Qt::AlignBottom : Qt::AlignRight;
    else if (!leading)
        alignment = across ? Qt::AlignVCenter : Qt::AlignHCenter;
    m_layout->insertWidget(end(), widget, stretch, alignment);
    widget->setVisible(!hidden);
}

void CWidgetList::keepSizeOf(const QWidget* widget)
{
    const int index = m_layout->indexOf(widget);
    auto* const item = index < 0 ? nullptr : dynamic_cast<CKeptSizeItem*>(m_layout->itemAt(index));
    if (!item)
        return;
    item->setKept(widget->size());
    m_layout->invalidate();
}

void CWidgetList::addFixSpace(int length)
{
    insertSpace(length);
}

void CWidgetList::addFixSpace(const QString& sizeKey)
{
    m_keyedSpaces.emplace_back(insertSpace(CUiResource::getSize(sizeKey)), sizeKey);
}

QSpacerItem* CWidgetList::insertSpace(int length)
{
    auto* space = new QSpacerItem(0, 0);
    setLength(space, length);
    m_layout->insertSpacerItem(end(), space);
    return space;
}

void CWidgetList::setLength(QSpacerItem* space, int length) const
{
    if (m_orientation == Qt::Horizontal)
        space->changeSize(length, 0, QSizePolicy::Fixed, QSizePolicy::Minimum);
    else
        space->changeSize(0, length, QSizePolicy::Minimum, QSizePolicy::Fixed);
}

void CWidgetList::addStretch()
{
    m_layout->insertStretch(end(), 1);
}

int CWidgetList::end() const
{
    return m_layout->count() - 1;
}

QSize CWidgetList::sizeHint() const
{
    return m_layout->totalSizeHint();
}

QSize CWidgetList::minimumSizeHint() const
{
    return m_layout->totalMinimumSize();
}

void CWidgetList::onUiResourceChanged()
{
    CBaseWidget::onUiResourceChanged();
    if (!m_spacingKey.isEmpty())
        setSpacing(CUiResource::getSize(m_spacingKey));
    for (const auto& [space, key] : m_keyedSpaces)
        setLength(space, CUiResource::getSize(key));
    m_layout->invalidate();
}

} // namespace KZ
