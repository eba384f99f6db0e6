#include "tests/postgresql/ProxyLine.h"

#include <QHostAddress>
#include <QTimer>
#include <QtEndian>

namespace {

// A message of the server's: its kind, and its length without the kind.
constexpr int headerSize = 5;
constexpr char readyForQuery = 'Z';
constexpr char notification = 'A';

} // namespace

ProxyLine::ProxyLine(QTcpSocket* client, quint16 serverPort, ProxyRules& rules, QObject* parent)
    : QObject(parent), m_client(client), m_server(new QTcpSocket(this)), m_rules(rules)
{
    m_client->setParent(this);
    connect(m_client, &QTcpSocket::readyRead, this, &ProxyLine::takeFromClient);
    connect(m_server, &QTcpSocket::readyRead, this, &ProxyLine::takeFromServer);
    connect(m_client, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    // What the server said last still reaches the client.
    const auto onServerGone = [this] {
        if (m_rules.swallowsToClient)
            return;
        m_server->disconnect(this);
        m_client->disconnectFromHost();
    };
    connect(m_server, &QTcpSocket::disconnected, this, onServerGone);
    connect(m_server, &QTcpSocket::errorOccurred, this, onServerGone);
    m_server->connectToHost(QHostAddress::LocalHost, serverPort);
    takeFromClient();
}

void ProxyLine::cut()
{
    m_server->disconnect(this);
    m_server->abort();
    m_client->abort();
    deleteLater();
}

void ProxyLine::takeFromClient()
{
    const QByteArray bytes = m_client->readAll();
    if (m_rules.swallowsToServer || bytes.isEmpty())
        return;
    if (!m_rules.lostReplyOf.isEmpty() && bytes.contains(m_rules.lostReplyOf)) {
        m_rules.lostReplyOf.clear();
        m_losesReply = true;
    }
    send(m_server, m_toServer, bytes);
}

void ProxyLine::takeFromServer()
{
    m_incomplete += m_server->readAll();
    if (m_rules.swallowsToClient) {
        m_incomplete.clear();
        return;
    }
    QByteArray passing;
    while (m_incomplete.size() >= headerSize) {
        const auto length = qFromBigEndian<quint32>(m_incomplete.constData() + 1);
        const qsizetype size = static_cast<qsizetype>(length) + 1;
        if (m_incomplete.size() < size)
            break;
        const char kind = m_incomplete.front();
        const bool isDropped = kind == notification && m_rules.dropsNotices;
        if (isDropped)
            ++m_rules.droppedNotices;
        else
            passing += m_incomplete.left(size);
        m_incomplete.remove(0, size);
        // Whatever the request changed has been committed by now.
        if (m_losesReply && kind == readyForQuery) {
            ++m_rules.lostReplies;
            cut();
            return;
        }
    }
    if (!m_losesReply && !passing.isEmpty())
        send(m_client, m_toClient, passing);
}

void ProxyLine::send(QTcpSocket* to, QQueue<QByteArray>& queue, const QByteArray& bytes)
{
    if (m_rules.delayMs == 0 && queue.isEmpty()) {
        to->write(bytes);
        return;
    }
    queue.enqueue(bytes);
    QTimer::singleShot(m_rules.delayMs, Qt::PreciseTimer, this, [to, &queue] {
        if (!queue.isEmpty())
            to->write(queue.dequeue());
    });
}
