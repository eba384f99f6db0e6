#pragma once

#include "backend/store/StoreOptions.h"
#include "host/options/HostOptions.h"

#include <QString>

#include <memory>

namespace host {

class HostApplication;
class TourScene;

/// The client that the tour walks through, on a store that it fills. Used on the tour's thread; the
/// client itself lives on the GUI thread.
class TourClient
{
public:
    /// `folder` must be empty; what the client keeps is put there. So is the demonstration store,
    /// unless `storeOptions` name a database on a server, as its administrator, in which there is
    /// nobody.
    TourClient(TourScene& scene, HostOptions options, backend::StoreOptions storeOptions,
               QString folder);
    ~TourClient();

    /// Starts the client; its sign-in window shows.
    void start();
    /// Ends it and starts it again on the same store.
    void restart();
    /// Types the user and the password into the sign-in window and waits for the client window.
    void signIn(const QString& user, const QString& password);
    /// Signs out through the menu.
    void signOut();

    /// How an administrator opens the store.
    const backend::StoreOptions& storeOptions() const { return m_storeOptions; }
    QString folder() const { return m_folder; }

private:
    void stop();
    backend::StoreOptions clientOptions() const;

    TourScene& m_scene;
    HostOptions m_options;
    backend::StoreOptions m_storeOptions;
    QString m_folder;
    std::unique_ptr<HostApplication> m_host;
};

} // namespace host
