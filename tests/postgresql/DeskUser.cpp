#include "tests/postgresql/DeskUser.h"

#include "tests/postgresql/DeskHands.h"
#include "tests/postgresql/DeskSight.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

constexpr int lookIntervalMs = 50;
constexpr int actIntervalMs = 10;
constexpr int patienceMs = 30'000;
constexpr qsizetype chunk = 65536;

} // namespace

DeskUser::DeskUser(host::HostApplication& client)
    : m_client(client), m_input(STDIN_FILENO, QSocketNotifier::Read)
{
    connect(&m_input, &QSocketNotifier::activated, this, &DeskUser::readOrders);
    connect(&m_lookTimer, &QTimer::timeout, this, &DeskUser::tell);
    connect(&m_actTimer, &QTimer::timeout, this, &DeskUser::actNext);
    m_actTimer.setSingleShot(true);
    m_lookTimer.start(lookIntervalMs);
}

void DeskUser::readOrders()
{
    QByteArray buffer(chunk, Qt::Uninitialized);
    const ssize_t size = ::read(STDIN_FILENO, buffer.data(), static_cast<std::size_t>(chunk));
    if (size <= 0) {
        // A dialog's event loop may run, so that the program would not simply end.
        m_input.setEnabled(false);
        QCoreApplication::exit();
        return;
    }
    m_rest += buffer.first(size);
    for (qsizetype end = m_rest.indexOf('\n'); end >= 0; end = m_rest.indexOf('\n')) {
        m_orders.append(QString::fromUtf8(m_rest.first(end)).split(QLatin1Char('\t')));
        m_rest.remove(0, end + 1);
    }
    if (!m_actTimer.isActive() && !m_orders.isEmpty()) {
        m_sinceOrder.start();
        m_actTimer.start(0);
    }
}

void DeskUser::actNext()
{
    // Typing turns the event loop, and nothing may happen between two letters.
    if (m_isTyping) {
        m_actTimer.start(actIntervalMs);
        return;
    }
    if (m_orders.isEmpty())
        return;
    const QStringList order = m_orders.constFirst();
    // Before acting, because what opens a dialog returns when that is closed.
    m_orders.removeFirst();
    ++m_done;
    if (!m_orders.isEmpty())
        m_actTimer.start(actIntervalMs);
    m_isTyping = order.value(0) == QStringLiteral("type");
    const bool isDone = DeskHands::act(order);
    m_isTyping = false;
    if (isDone) {
        m_sinceOrder.start();
        return;
    }
    --m_done;
    m_orders.prepend(order);
    if (m_sinceOrder.hasExpired(patienceMs)) {
        qCritical("cannot %s", qPrintable(order.join(QLatin1Char(' '))));
        // The client's threads go on meanwhile.
        std::_Exit(EXIT_FAILURE);
    }
    m_actTimer.start(actIntervalMs);
}

void DeskUser::tell()
{
    QJsonObject seen = lookAt(m_client);
    seen[QStringLiteral("done")] = m_done;
    if (seen == m_told)
        return;
    m_told = seen;
    const QByteArray line = QJsonDocument(seen).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stdout);
    std::fflush(stdout);
}
