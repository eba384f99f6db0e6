#pragma once

#include "tests/postgresql/ProxyRules.h"

#include <QObject>
#include <QQueue>
#include <QTcpSocket>

/// One client's connection through a proxy. Goes away with either end's connection.
class ProxyLine : public QObject
{
public:
    ProxyLine(QTcpSocket* client, quint16 serverPort, ProxyRules& rules, QObject* parent);

    /// Ends it at once, as when a machine dies.
    void cut();

private:
    void takeFromClient();
    void takeFromServer();
    void send(QTcpSocket* to, QQueue<QByteArray>& queue, const QByteArray& bytes);

    QTcpSocket* m_client;
    QTcpSocket* m_server;
    ProxyRules& m_rules;
    QQueue<QByteArray> m_toServer;
    QQueue<QByteArray> m_toClient;
    /// The beginning of a message of the server's.
    QByteArray m_incomplete;
    bool m_losesReply = false;
};
