#pragma once

#include "tests/postgresql/DesksFixture.h"

#include <QJsonObject>
#include <QProcess>

#include <functional>

/// A client in a process of its own, seen from a test: takes orders and tells what it shows. See
/// DeskHands for the orders and DeskSight for what is shown.
class Desk
{
public:
    using Condition = std::function<bool()>;

    /// Starts the client for `user`, who reaches the server through `port`. It opens the settings
    /// dialog on a page after the sign-in when `page` is not 0.
    Desk(const DesksFixture& fixture, QString user, quint16 port, int page = 0);
    ~Desk();

    /// Types user and password into the sign-in window and waits for the window that follows.
    bool signIn();
    /// Has something done; returns when the client has begun to do it.
    bool order(const QStringList& words);
    /// The same for one thing after another.
    bool orders(const QList<QStringList>& all);
    /// Opens the batch tab, ticks accounts `first` to `last`, types the grantee and sees that the
    /// last row shows him.
    bool prepareGrant(int first, int last, const QString& grantee);
    /// Clicks "授权" and then "服务器授权".
    bool grant();
    /// Ends it as its user would; whether it ended well.
    bool leave();

    /// Waits until `condition` holds of what is shown; says what is shown when it does not.
    bool await(const Condition& condition, int timeoutMs = 60'000);

    QString text(const char* what) const;
    QStringList texts(const char* what) const;
    bool isTrue(const char* what) const;
    /// How many rows a table has: "accounts", "messages" or "table".
    int count(const char* table) const;
    /// The row of an account; empty unless there is exactly one.
    QStringList row(const char* table, int account) const;
    /// Each account's number and, when there is one, the user on the other side.
    QStringList outcomes(const char* table, int numberColumn, int otherSideColumn) const;
    /// Whether some tip contains `words`.
    bool tips(const QString& words) const;
    int ordersGiven() const { return m_orders; }

private:
    void read();

    QString m_user;
    bool m_opensPage;
    QProcess m_process;
    QByteArray m_rest;
    QJsonObject m_shown;
    int m_orders = 0;
};
