#pragma once

#include "tests/postgresql/ProxyRules.h"

#include <QThread>

#include <functional>
#include <memory>

class QTcpServer;

/// Stands between clients and a PostgreSQL server on this machine, without encryption, and spoils
/// the traffic on command. Works in a thread of its own, so that clients may block; commands take
/// effect before they return.
class TcpProxy
{
public:
    explicit TcpProxy(quint16 serverPort);
    ~TcpProxy();
    TcpProxy(const TcpProxy&) = delete;
    TcpProxy& operator=(const TcpProxy&) = delete;

    quint16 port() const { return m_port; }

    /// Everything sent in that direction vanishes from now on; connections stay.
    void swallowToServer();
    void swallowToClient();
    /// Everything arrives so much later.
    void delay(int ms);
    /// Messages that tell of a change vanish.
    void dropNotices();
    /// The next request that contains `text` reaches the server, but the reply does not come back
    /// and the connection ends.
    void loseReplyOf(const QByteArray& text);
    /// Ends every connection.
    void cut();
    /// Lets everything through again; what has vanished stays so.
    void pass();

    /// How many connections have been made.
    int connections() const;
    int lostReplies() const;
    int droppedNotices() const;

private:
    void inThread(const std::function<void()>& work) const;

    QThread m_thread;
    /// Lives in the thread; the lines are its children.
    QTcpServer* m_server = nullptr;
    ProxyRules m_rules;
    int m_connections = 0;
    quint16 m_port = 0;
};
