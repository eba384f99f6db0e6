#pragma once

#include "tests/postgresql/DesksFixture.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

/// Who may enter the server of a test, and how well it proves who it is. The superuser always may,
/// through the server's socket, which the fixture's queries take from then on. Everything is as
/// before when the object goes; one at a time.
class ServerGate
{
public:
    explicit ServerGate(const DesksFixture& fixture);
    ~ServerGate();
    ServerGate(const ServerGate&) = delete;
    ServerGate& operator=(const ServerGate&) = delete;

    /// In the words of pg_hba.conf. False when the server does not take them.
    bool setRules(const QByteArray& rules) const;
    /// Lets the server prove itself with a certificate for `name` from a new authority. False on
    /// failure.
    bool encryptAs(const QString& name) const;
    bool stopEncrypting() const;

    /// File of the authority that encryptAs() has made.
    QString authority() const;
    /// File of an authority that has signed nothing.
    QString otherAuthority() const;

private:
    QByteArray file(const QString& name) const;
    bool makeAuthority(const QString& name) const;
    bool installForServer(const QString& file) const;

    const DesksFixture& m_fixture;
    QTemporaryDir m_folder;
    QByteArray m_rulesBefore;
    QByteArray m_hostBefore;
};
