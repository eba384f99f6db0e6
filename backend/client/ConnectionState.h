#pragma once

#include <QObject>
#include <QString>

namespace backend {

/// Whether the store can be reached, for the host to show. An embedded store always can. GUI
/// thread only.
class ConnectionState : public QObject
{
    Q_OBJECT

public:
    explicit ConnectionState(bool isRemote) : m_isRemote(isRemote) {}

    /// Whether the store is on a server.
    bool isRemote() const { return m_isRemote; }
    bool isOnline() const { return m_isOnline; }
    /// Why the server, which is there, does not take the user back, in Chinese; empty while online
    /// and while the server cannot be reached.
    const QString& refusal() const { return m_refusal; }
    /// For the client.
    void set(bool isOnline, const QString& refusal = {});

Q_SIGNALS:
    /// Within 15 s of the server's going, and as soon as it has been found again and read. While
    /// offline also when refusal() is another.
    void changed(bool isOnline);

private:
    bool m_isRemote;
    bool m_isOnline = true;
    QString m_refusal;
};

} // namespace backend
