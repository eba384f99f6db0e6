#pragma once

#include <QProcess>

class DesksFixture;

/// Holds every request that grants one account in the middle of its work, until it is let go on or
/// the server ends.
class StalledGrant
{
public:
    StalledGrant(const DesksFixture& fixture, int account);
    ~StalledGrant();

    /// Waits until requests hold still: the one that grants the account, and those that wait for
    /// it in turn.
    bool awaitRequests(int count) const;
    void goOn();

private:
    const DesksFixture& m_fixture;
    QProcess m_psql;
};
