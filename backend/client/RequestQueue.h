#pragma once

#include "backend/client/ClientRequest.h"

#include <QMutex>
#include <QVector>

namespace backend {

/// Requests between the GUI thread, which puts them in, and the worker, which takes them all at
/// once. Any thread.
class RequestQueue
{
public:
    void put(QVector<ClientRequest> requests);
    QVector<ClientRequest> takeAll();

private:
    QMutex m_mutex;
    QVector<ClientRequest> m_requests;
};

} // namespace backend
