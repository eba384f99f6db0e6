#pragma once

#include <boost/function.hpp>

namespace GW {

class CAuthSettingNavigator;
class CBusyCount;
class CFocusKeeper;
class CNavigatorFilter;

/// What the dialog keeps beside the members of its installed header, so that more of it changes no
/// host's build. The widgets belong to the dialog.
struct CAuthSettingDialogPrivate
{
    boost::function<void(CAuthSettingNavigator*)> navigatorFiller;
    CBusyCount* busyCount = nullptr;
    bool busy = false;
    CFocusKeeper* focusKeeper = nullptr;
    CNavigatorFilter* navigatorFilter = nullptr;
    /// Whether showSettingPage() is inside the dialog's own event loop.
    bool executing = false;
    /// Whether it was asked for again after closing, before that loop has ended.
    bool reopening = false;
};

} // namespace GW
