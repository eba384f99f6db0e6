#pragma once

#include "kit/KitExport.h"

#include <QString>

class QWidget;

namespace KZ {

/// A link of the chain along which kit events travel from a widget up to its dialog.
///
/// deliverEvent() hands an event to the parent deliverer's handleEvent(); whoever does not handle
/// it passes it further up by calling its base class, and the chain ends at a deliverer without a
/// parent, which answers false. GUI thread only. A handler may delete the sender.
class KZKIT_EXPORT CEventDeliverer
{
public:
    CEventDeliverer() = default;
    CEventDeliverer(const CEventDeliverer&) = delete;
    CEventDeliverer& operator=(const CEventDeliverer&) = delete;
    virtual ~CEventDeliverer();

    /// Hands the event to the parent deliverer; false when there is none or nobody handled it.
    bool deliverEvent(int eventId, int param1, int param2, QString text, void* data);

    /// Handles an event from below. The base passes it on to the parent deliverer.
    virtual bool handleEvent(int eventId, int param1, int param2, QString text, void* data);

protected:
    /// The next deliverer up the chain, null at its end; not owned. Asked at every delivery, so a
    /// widget may be reparented at any time.
    virtual CEventDeliverer* parentDeliverer() const = 0;
};

/// The nearest deliverer at or above `widget` in the chain of parent widgets, null without one.
KZKIT_EXPORT CEventDeliverer* castEventDeliverer(QWidget* widget);

} // namespace KZ
