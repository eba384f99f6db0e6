#pragma once

#include "kit/events/EventWidget.h"
#include "kit/resources/UiResourceChangeHandler.h"

#include <QMargins>
#include <QPointer>

namespace KZ {

/// Base of the kit's composite widgets: a link of the event chain that follows the theme, can be
/// told whether it is the active one, and may hold one inner widget that it keeps in place.
class KZKIT_EXPORT CBaseWidget : public CEventWidgetT<QWidget>, public CUiResourceChangeHandler
{
    Q_OBJECT

public:
    explicit CBaseWidget(QWidget* parent);
    ~CBaseWidget() override;

    /// Tells the widget that it has become the active one or ceased to be; becoming active calls
    /// onActive(). With `recursive` the kit's widgets below it are told as well.
    virtual void setActive(bool active, bool recursive);

    /// Called each time the widget becomes active. The base does nothing.
    virtual void onActive();

    /// The part of the widget, in its own coordinates, that something laid over it has to cover.
    virtual QRect getMaskRect() const;

    /// Makes `widget` a child that fills this one except for the margins, in pixels. It takes the
    /// place of an earlier inner widget, which stays a child but is no longer placed.
    void setInnerStretchWidget(QWidget* widget, int left, int top, int right, int bottom);

    /// Makes `widget` a child that keeps its own size in the middle of this one.
    void setInnerFixWidget(QWidget* widget);

    bool isActive() const { return m_active; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    void onUiResourceChanged() override;

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void takeInner(QWidget* widget);
    void placeInner();

    QPointer<QWidget> m_inner;
    QMargins m_innerMargins;
    bool m_innerStretches = false;
    bool m_active = false;
};

} // namespace KZ
