#pragma once

#include <QString>

namespace backend {

/// Why the store could not do something for reasons of its own. A value.
struct StoreFailure
{
    enum class Kind {
        None,
        /// There is no store at the place named.
        Missing,
        /// The file is something else than a store.
        NotAStore,
        Damaged,
        /// Written by a newer program.
        NewerSchema,
        /// Another process kept the store locked for too long.
        Busy,
        Full,
        ReadOnly,
        Io,
        /// The file at the store's place is another one than the one that was opened.
        Replaced,
        OutOfMemory,
        /// A row that the tables themselves forbid.
        Constraint,
        /// The server does not answer.
        Offline,
        /// The server knows no such name, or another password for it.
        WrongLogin,
        /// The server does not let this user in any more.
        Disabled,
        /// No server answers at that address.
        Unreachable,
        /// The server's certificate is not from a trusted authority, or bears another name.
        Untrusted,
        /// The server cannot encrypt, which the address asks for.
        Unencrypted,
        /// The file of trusted authorities cannot be read.
        NoAuthority,
        /// The server takes nobody from there, whatever the name.
        NotAdmitted,
        /// The server has as many connections as it can have.
        Crowded,
        /// The server's database has no store in it, or one of an older program.
        NotPrepared,
        Other,
    };

    Kind kind = Kind::None;
    /// The engine's own words, for the log.
    QString detail;

    explicit operator bool() const { return kind != Kind::None; }
    /// What to tell the user, in Chinese; empty for None.
    QString text() const;
};

} // namespace backend
