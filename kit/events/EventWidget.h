#pragma once

#include "kit/events/EventDeliverer.h"

#include <QWidget>

#include <utility>

namespace KZ {

/// A widget of class `Base` that is also a link of the kit's event chain; its parent deliverer is
/// the nearest deliverer among its parent widgets.
template <class Base>
class CEventWidgetT : public Base, public CEventDeliverer
{
public:
    template <class... Args>
    explicit CEventWidgetT(Args&&... args) : Base(std::forward<Args>(args)...)
    {
    }

protected:
    CEventDeliverer* parentDeliverer() const override
    {
        return castEventDeliverer(this->parentWidget());
    }
};

} // namespace KZ
