#pragma once

#include "kit/KitExport.h"

#include <QtGlobal>

namespace KZ {

/// Base of whatever has to look up its colours and sizes anew when they change: registered from
/// construction to destruction. A handler may be created or destroyed inside any other's
/// notification; a new one is not told of the change under way. GUI thread only.
class KZKIT_EXPORT CUiResourceChangeHandler
{
public:
    CUiResourceChangeHandler();
    CUiResourceChangeHandler(const CUiResourceChangeHandler&) = delete;
    CUiResourceChangeHandler& operator=(const CUiResourceChangeHandler&) = delete;
    virtual ~CUiResourceChangeHandler();

    /// The theme or the set of sizes has changed; the registry already answers with the new values.
    virtual void onUiResourceChanged() = 0;

    /// Calls every registered handler in the order of registration.
    static void notifyAll();

private:
    const quint64 m_serial;
};

} // namespace KZ
