#include "tests/postgresql/TcpProxy.h"

#include "tests/postgresql/ProxyLine.h"

#include <QTcpServer>

TcpProxy::TcpProxy(quint16 serverPort)
{
    m_server = new QTcpServer;
    m_server->moveToThread(&m_thread);
    m_thread.start();
    inThread([this, serverPort] {
        QObject::connect(m_server, &QTcpServer::newConnection, m_server, [this, serverPort] {
            while (QTcpSocket* client = m_server->nextPendingConnection()) {
                new ProxyLine(client, serverPort, m_rules, m_server);
                ++m_connections;
            }
        });
        m_server->listen(QHostAddress::LocalHost);
        m_port = m_server->serverPort();
    });
}

TcpProxy::~TcpProxy()
{
    inThread([this] { delete m_server; });
    m_thread.quit();
    m_thread.wait();
}

void TcpProxy::inThread(const std::function<void()>& work) const
{
    QMetaObject::invokeMethod(m_server, work, Qt::BlockingQueuedConnection);
}

void TcpProxy::swallowToServer()
{
    inThread([this] { m_rules.swallowsToServer = true; });
}

void TcpProxy::swallowToClient()
{
    inThread([this] { m_rules.swallowsToClient = true; });
}

void TcpProxy::delay(int ms)
{
    inThread([this, ms] { m_rules.delayMs = ms; });
}

void TcpProxy::dropNotices()
{
    inThread([this] { m_rules.dropsNotices = true; });
}

void TcpProxy::loseReplyOf(const QByteArray& text)
{
    inThread([this, text] { m_rules.lostReplyOf = text; });
}

void TcpProxy::cut()
{
    inThread([this] {
        // No type information of its own in the meta-object system.
        const QObjectList children = m_server->children();
        for (QObject* child : children) {
            if (auto* line = dynamic_cast<ProxyLine*>(child))
                line->cut();
        }
    });
}

void TcpProxy::pass()
{
    inThread([this] {
        const int lostReplies = m_rules.lostReplies;
        const int droppedNotices = m_rules.droppedNotices;
        m_rules = ProxyRules();
        m_rules.lostReplies = lostReplies;
        m_rules.droppedNotices = droppedNotices;
    });
}

int TcpProxy::connections() const
{
    int count = 0;
    inThread([&] { count = m_connections; });
    return count;
}

int TcpProxy::lostReplies() const
{
    int count = 0;
    inThread([&] { count = m_rules.lostReplies; });
    return count;
}

int TcpProxy::droppedNotices() const
{
    int count = 0;
    inThread([&] { count = m_rules.droppedNotices; });
    return count;
}
