#pragma once

#include <QString>

namespace backend {

/// Where a store is. A value.
struct StoreLocation
{
    /// "sqlite" for the embedded store.
    QString engine;
    /// Absolute path of the embedded store's file.
    QString path;

    bool isValid() const { return !engine.isEmpty() && !path.isEmpty(); }

    /// Reads a path, or "sqlite:" followed by one; invalid for an empty text and for an engine
    /// that this build does not have.
    static StoreLocation parse(const QString& text);

    /// The store of the user who runs the program: "authsetting.db" in his data folder.
    static StoreLocation standard();
};

} // namespace backend
