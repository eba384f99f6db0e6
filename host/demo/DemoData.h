#pragma once

#include <QDate>
#include <QString>
#include <QVector>

namespace backend {
class StoreAdmin;
}

namespace host {

/// The invented people, companies and accounts of the demonstration store, seen from one user who
/// has everything: accounts of both kinds, grants in every state, sub-users, sub-accounts.
class DemoData
{
public:
    DemoData() = delete;

    /// The user whom the sign-in window proposes.
    static QString mainUser();
    /// Two other users, the first of whom has granted accounts to the main user.
    static QString partner();
    static QString colleague();
    /// Sub-users of the main user: two enabled ones and a disabled one.
    static QString dayTrader();
    static QString nightTrader();
    static QString disabledTrader();
    /// Everybody who can sign in, in the order in which the sign-in window lists them.
    static QVector<QString> users();
    /// Everybody's password.
    static QString password();

    /// Adds everything to an empty store; days of grants are counted from `today`. False as soon as
    /// the store refuses something; the store knows why. The caller commits.
    static bool fill(backend::StoreAdmin& store, const QDate& today);
};

} // namespace host
