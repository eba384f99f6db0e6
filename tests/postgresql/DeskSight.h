#pragma once

#include <QJsonObject>

namespace host {
class HostApplication;
}

/// What a client shows to the one who sits before it, read from its visible widgets:
///   window      title of the window that he works in
///   signInError what the sign-in window says
///   connection  the connection's text in the status bar
///   notice      what stands above the accounts while something is wrong
///   accounts    texts of the account list's rows
///   messages    texts of the message area's rows
///   tab         title of the settings dialog's tab in front
///   table       texts of the rows of that tab's table
///   usable      whether that table takes clicks
///   chosen      texts of its chosen row
///   busy        whether the dialog waits for the server
///   progress    how much of a batch is answered
///   tips        texts of all tips
QJsonObject lookAt(const host::HostApplication& client);
