#pragma once

#include <QPointer>
#include <QWidget>

#include <boost/function.hpp>

namespace GW {

class CAuthSettingNavigator;
class CBusyCount;

/// What the dialog keeps beside the members of its installed header, so that more of it changes no
/// host's build. The widgets belong to the dialog.
struct CAuthSettingDialogPrivate
{
    boost::function<void(CAuthSettingNavigator*)> navigatorFiller;
    CBusyCount* busyCount = nullptr;
    bool busy = false;
    QPointer<QWidget> focusBeforeBusy;
};

} // namespace GW
