#include "backend/client/ResultOutbox.h"

#include <QElapsedTimer>
#include <QPointer>

#include <utility>

namespace backend {

ResultOutbox::ResultOutbox(ResultSink& sink) : m_sink(sink)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &ResultOutbox::turn);
}

void ResultOutbox::add(std::shared_ptr<Delivery> delivery)
{
    m_entries.push_back({std::move(delivery)});
    m_timer.start();
}

void ResultOutbox::turn()
{
    const QPointer<ResultOutbox> self(this);
    QElapsedTimer elapsed;
    elapsed.start();
    while (!m_entries.empty() && !elapsed.hasExpired(sliceMs)) {
        // Armed before each step, because the step may run an event loop of its own.
        if (!m_timer.isActive())
            m_timer.start();
        step();
        if (!self)
            return;
    }
    if (m_entries.empty())
        m_timer.stop();
}

// One call of the sink, after which this object may be gone.
void ResultOutbox::step()
{
    Entry& entry = m_entries.front();
    if (!entry.begun) {
        entry.begun = true;
        if (entry.delivery->snapshot)
            m_sink.takeSnapshot(*entry.delivery->snapshot, entry.delivery->number);
        return;
    }
    if (entry.next < entry.delivery->results.size()) {
        const ClientResult result = std::move(entry.delivery->results[entry.next++]);
        m_sink.emitResult(result);
        return;
    }
    const bool changed = entry.delivery->snapshot.has_value();
    m_entries.pop_front();
    if (changed)
        m_sink.emitChanged();
}

} // namespace backend
