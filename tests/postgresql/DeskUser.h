#pragma once

#include <QElapsedTimer>
#include <QJsonObject>
#include <QObject>
#include <QSocketNotifier>
#include <QStringList>
#include <QTimer>

namespace host {
class HostApplication;
}

/// Sits before a client: does what the lines on standard input say, words separated by tabs, and
/// says on standard output what the client shows whenever that changes, as one line of JSON that
/// also counts the orders begun ("done"). Leaves at the end of the input. An order whose place has
/// not come into sight within ten seconds ends the program with an error. GUI thread only.
class DeskUser : public QObject
{
    Q_OBJECT

public:
    explicit DeskUser(host::HostApplication& client);

private:
    void readOrders();
    void actNext();
    void tell();

    host::HostApplication& m_client;
    QSocketNotifier m_input;
    QByteArray m_rest;
    QList<QStringList> m_orders;
    QElapsedTimer m_sinceOrder;
    QTimer m_actTimer;
    QTimer m_lookTimer;
    QJsonObject m_told;
    bool m_isTyping = false;
    int m_done = 0;
};
