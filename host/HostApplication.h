#pragma once

#include "backend/store/StoreOptions.h"
#include "host/options/HostOptions.h"

#include <QObject>

#include <memory>

namespace host {

class ClientWindow;
class SignInDialog;

/// The client from its start to its end: the store, the sign-in window, one client window for each
/// user who signs in. GUI thread only.
class HostApplication : public QObject
{
    Q_OBJECT

public:
    /// `storeOptions` without a location stands for the demonstration store in `demoFolder`, which
    /// start() makes when it does not exist.
    HostApplication(HostOptions options, backend::StoreOptions storeOptions, QString demoFolder);
    ~HostApplication() override;

    /// Opens the store and the sign-in window. Empty on success, else the reason in Chinese; a
    /// store that cannot be used is left as it is.
    QString start();

    /// Closes the client window and returns to the sign-in window; nothing before signing in and
    /// while the settings dialog is open. Requests that are out are finished first.
    void signOut();

    /// Null unless it is open.
    SignInDialog* signInDialog() const { return m_signIn.get(); }
    ClientWindow* clientWindow() const { return m_window.get(); }

Q_SIGNALS:
    /// The user has left the client.
    void finished();

private:
    QString openStore();
    void showSignIn(const QString& user);
    void onSignedIn();

    HostOptions m_options;
    backend::StoreOptions m_storeOptions;
    QString m_demoFolder;
    bool m_isDemo = false;
    std::unique_ptr<SignInDialog> m_signIn;
    std::unique_ptr<ClientWindow> m_window;
};

} // namespace host
