#pragma once

#include <QString>

#include <boost/function.hpp>

class QWidget;

namespace GW {

/// Asks where to write an authorization file, proposing a name with the local time in the current
/// folder. Empty when the user cancels. Runs an event loop in which `page` may be destroyed.
QString chooseGrantFile(QWidget* page);

/// Asks for the password of an authorization file and hands it, as typed, to `callback`; not
/// called when the user cancels. Returns whether he accepted. Runs an event loop in which `page`
/// may be destroyed.
bool askGrantPassword(QWidget* page, const boost::function<void(QString)>& callback);

} // namespace GW
