#include "kit/widgets/BaseWidget.h"

#include "kit/resources/KitStyle.h"
#include "kit/resources/UiResource.h"

#include <QEvent>
#include <QResizeEvent>

namespace KZ {

namespace {

void setActiveBelow(const QWidget* parent, bool active)
{
    QList<QPointer<QWidget>> children;
    const QList<QWidget*> found =
        parent->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* child : found)
        children.append(child);
    for (const QPointer<QWidget>& child : children) {
        // An onActive() may have deleted it.
        if (!child || child->isWindow())
            continue;
        if (auto* const kitWidget = dynamic_cast<CBaseWidget*>(child.data()))
            kitWidget->setActive(active, true);
        else
            setActiveBelow(child, active);
    }
}

} // namespace

CBaseWidget::CBaseWidget(QWidget* parent) : CEventWidgetT<QWidget>(parent)
{
    setStyle(kitStyle());
    if (!castEventDeliverer(parent)) {
        setPalette(CUiResource::palette());
        setFont(CUiResource::getFont(QStringLiteral("fnt_default_normal")));
    }
}

CBaseWidget::~CBaseWidget() = default;

void CBaseWidget::setActive(bool active, bool recursive)
{
    const QPointer<CBaseWidget> guard(this);
    m_active = active;
    if (active)
        onActive();
    if (guard && recursive)
        setActiveBelow(this, active);
}

void CBaseWidget::onActive() {}

QRect CBaseWidget::getMaskRect() const
{
    return rect();
}

void CBaseWidget::setInnerStretchWidget(QWidget* widget, int left, int top, int right, int bottom)
{
    m_innerStretches = true;
    m_innerMargins = QMargins(left, top, right, bottom);
    takeInner(widget);
}

void CBaseWidget::setInnerFixWidget(QWidget* widget)
{
    m_innerStretches = false;
    m_innerMargins = QMargins();
    if (widget && !widget->testAttribute(Qt::WA_Resized))
        widget->adjustSize();
    takeInner(widget);
}

void CBaseWidget::takeInner(QWidget* widget)
{
    m_inner = widget;
    if (widget) {
        const bool keptHidden =
            widget->testAttribute(Qt::WA_WState_ExplicitShowHide) && widget->isHidden();
        if (widget->parentWidget() != this)
            widget->setParent(this);
        if (!keptHidden)
            widget->show();
        placeInner();
    }
    updateGeometry();
}

void CBaseWidget::placeInner()
{
    if (!m_inner)
        return;
    if (m_innerStretches) {
        m_inner->setGeometry(rect().marginsRemoved(m_innerMargins));
        return;
    }
    QRect place(QPoint(), m_inner->size());
    place.moveCenter(rect().center());
    m_inner->move(place.topLeft());
}

QSize CBaseWidget::sizeHint() const
{
    if (!m_inner)
        return CEventWidgetT<QWidget>::sizeHint();
    const QSize inner = m_innerStretches ? m_inner->sizeHint() : m_inner->size();
    return inner.grownBy(m_innerMargins);
}

QSize CBaseWidget::minimumSizeHint() const
{
    if (!m_inner)
        return CEventWidgetT<QWidget>::minimumSizeHint();
    const QSize inner = m_innerStretches
                            ? m_inner->minimumSizeHint().expandedTo(m_inner->minimumSize())
                            : m_inner->size();
    return inner.expandedTo(QSize(0, 0)).grownBy(m_innerMargins);
}

void CBaseWidget::onUiResourceChanged()
{
    // A widget outside of the kit's windows carries the palette for everything below it.
    if (!castEventDeliverer(parentWidget()))
        setPalette(CUiResource::palette());
    update();
}

bool CBaseWidget::event(QEvent* event)
{
    applyKitStyleToPolishedChild(event);
    const bool done = CEventWidgetT<QWidget>::event(event);
    if (event->type() == QEvent::LayoutRequest && m_inner) {
        placeInner();
        updateGeometry();
    }
    return done;
}

void CBaseWidget::resizeEvent(QResizeEvent* event)
{
    CEventWidgetT<QWidget>::resizeEvent(event);
    placeInner();
}

} // namespace KZ
