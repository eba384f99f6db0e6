#pragma once

#include <QObject>

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
    /// For the client.
    void set(bool isOnline);

Q_SIGNALS:
    /// Within 15 s of the server's going, and as soon as it has been found again and read.
    void changed(bool isOnline);

private:
    bool m_isRemote;
    bool m_isOnline = true;
};

} // namespace backend
