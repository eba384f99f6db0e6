#pragma once

#include "backend/store/StoreOptions.h"

#include <QString>

namespace admin {

/// Copies an embedded store, passwords' hashes and audit trail included, to a file and back while
/// clients go on working with it.
class EmbeddedBackup
{
public:
    explicit EmbeddedBackup(backend::StoreOptions store);

    /// Writes `file`, whole or not at all; an existing one is left alone. Why it failed, in
    /// Chinese, or empty.
    QString save(const QString& file) const;
    /// Makes the store from `file`; there must be none yet. Why it failed, in Chinese, or empty.
    QString restore(const QString& file) const;

private:
    /// Copies the store at `from`, opened for reading only, into the empty file `to`.
    static QString copy(const QString& from, const QString& to);
    /// Why what is at `path` is no sound store, or empty.
    QString problemAt(const QString& path) const;

    backend::StoreOptions m_store;
};

} // namespace admin
