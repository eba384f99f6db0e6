#include "kit/resources/UiResourceChangeHandler.h"

#include <map>

namespace KZ {

namespace {

using Handlers = std::map<quint64, CUiResourceChangeHandler*>;

// Never destroyed, so that handlers with static storage may still unregister at exit.
Handlers& handlers()
{
    static Handlers& all = *new Handlers;
    return all;
}

quint64 lastSerial = 0;

} // namespace

CUiResourceChangeHandler::CUiResourceChangeHandler() : m_serial(++lastSerial)
{
    handlers().emplace_hint(handlers().end(), m_serial, this);
}

CUiResourceChangeHandler::~CUiResourceChangeHandler()
{
    handlers().erase(m_serial);
}

void CUiResourceChangeHandler::notifyAll()
{
    const quint64 last = lastSerial;
    // Serials instead of iterators, because a call may remove any handler, the next one included.
    for (quint64 serial = 0;;) {
        const auto it = handlers().upper_bound(serial);
        if (it == handlers().end() || it->first > last)
            return;
        serial = it->first;
        it->second->onUiResourceChanged();
    }
}

} // namespace KZ
