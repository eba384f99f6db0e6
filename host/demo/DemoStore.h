#pragma once

#include "backend/store/StoreOptions.h"

#include <QString>

namespace host {

/// The store with invented data that the client uses when none is named. It has a folder of its
/// own and is filled when it is made, never later and never in the place of an existing file. On a
/// server only a database in which there is nobody is filled, and only for who asks for that.
class DemoStore
{
public:
    DemoStore() = delete;

    /// The folder of this machine's demonstration store, in the user's data folder.
    static QString standardFolder();

    /// The store's file in `folder`.
    static QString filePath(const QString& folder);

    /// Makes and fills the store in `folder` unless its file exists. It appears whole or not at
    /// all, also when two clients start at once. `options` gives clock and hashing; its location is
    /// not used. Empty on success, else the reason in Chinese.
    static QString ensure(const QString& folder, backend::StoreOptions options);

    /// Fills the database on a server that `options` name, as the server's administrator; its
    /// schema is made or brought up to date. Refused, and nothing added, when there is a user in
    /// it. Empty on success, else the reason in Chinese.
    static QString fillServer(const backend::StoreOptions& options);
};

} // namespace host
