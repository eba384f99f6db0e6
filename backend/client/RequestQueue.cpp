#include "backend/client/RequestQueue.h"

#include <QMutexLocker>

#include <utility>

namespace backend {

void RequestQueue::put(QVector<ClientRequest> requests)
{
    const QMutexLocker lock(&m_mutex);
    if (m_requests.isEmpty())
        m_requests = std::move(requests);
    else
        m_requests += requests;
}

QVector<ClientRequest> RequestQueue::takeAll()
{
    const QMutexLocker lock(&m_mutex);
    return std::exchange(m_requests, {});
}

} // namespace backend
