#pragma once

#include "backend/client/Session.h"
#include "backend/store/StoreOptions.h"
#include "host/HostApplication.h"

#include <QTemporaryDir>

#include <memory>

namespace host {
class ClientWindow;
}

/// A demonstration store in a temporary folder with worthless, fast hashing, and a clock that
/// stands still until it is moved.
class DemoFixture
{
public:
    DemoFixture();

    /// Without a location, as the client gets them for the demonstration store.
    backend::StoreOptions options() const;
    /// The same with the location of the store, which is made if it does not exist.
    backend::StoreOptions storeOptions() const;
    QString folder() const { return m_folder.path(); }

    /// What the clock shows: 2026-03-02 10:30 in the exchange time zone at first.
    QDateTime now() const { return *m_now; }
    void setNow(const QDateTime& now) { *m_now = now; }

    std::unique_ptr<backend::Session> signIn(const QString& user) const;
    /// The window of a user who has signed in.
    std::unique_ptr<host::ClientWindow> clientWindow(const QString& user) const;

private:
    QTemporaryDir m_folder;
    std::shared_ptr<QDateTime> m_now;
};
