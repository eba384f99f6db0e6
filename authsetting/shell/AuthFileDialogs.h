#pragma once

#include <QString>

#include <boost/function.hpp>

class QWidget;

namespace GW {

/// Asks the user for the authorization file to write, proposing a name with the local date and
/// time; empty when he cancels. Runs a modal dialog, during which `page` may die.
QString askAuthFilePath(QWidget* page);

/// Asks the user for the password of an authorization file and hands it to `callback`; returns
/// whether he accepted. Runs a modal dialog, during which `page` may die: `callback` is then not
/// called.
bool askAuthPassword(QWidget* page, boost::function<void(QString)> callback);

} // namespace GW
