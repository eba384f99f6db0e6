#pragma once

#include "admin/command/AdminOptions.h"
#include "admin/command/ExitCode.h"
#include "backend/store/StoreAdmin.h"
#include "backend/store/StoreOptions.h"

#include <QString>

#include <memory>
#include <optional>

namespace admin {

/// Does what the command line asks for; writes results to standard output and reasons of failures
/// to standard error.
class AdminCommand
{
public:
    explicit AdminCommand(AdminOptions options);

    ExitCode run();

private:
    ExitCode readPassword();
    ExitCode create();
    ExitCode import();
    ExitCode list();
    ExitCode setPassword();
    ExitCode setEnabled(bool enabled);
    ExitCode verify();
    ExitCode backUp();
    ExitCode restore();

    static ExitCode fail(ExitCode code, const QString& reason);
    /// After a change that did not come about.
    static ExitCode refused(const backend::StoreAdmin& store);
    /// The password to be set, or nothing with the reason in `error`.
    std::optional<QString> newPassword(QString* error) const;
    /// The store, or null after the reason was written. Only `mayCreate` makes a missing file.
    std::unique_ptr<backend::StoreAdmin> openStore(bool mayCreate);

    AdminOptions m_options;
    backend::StoreOptions m_store;
};

} // namespace admin
