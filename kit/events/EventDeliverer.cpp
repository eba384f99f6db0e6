#include "kit/events/EventDeliverer.h"

#include <QWidget>

namespace KZ {

CEventDeliverer::~CEventDeliverer() = default;

bool CEventDeliverer::deliverEvent(int eventId, int param1, int param2, QString text, void* data)
{
    CEventDeliverer* const parent = parentDeliverer();
    return parent && parent->handleEvent(eventId, param1, param2, text, data);
}

bool CEventDeliverer::handleEvent(int eventId, int param1, int param2, QString text, void* data)
{
    return deliverEvent(eventId, param1, param2, text, data);
}

CEventDeliverer* castEventDeliverer(QWidget* widget)
{
    for (; widget; widget = widget->parentWidget()) {
        if (auto* const deliverer = dynamic_cast<CEventDeliverer*>(widget))
            return deliverer;
    }
    return nullptr;
}

} // namespace KZ
