#include "backend/client/ConnectionState.h"

namespace backend {

void ConnectionState::set(bool isOnline, const QString& refusal)
{
    if (isOnline == m_isOnline && refusal == m_refusal)
        return;
    m_isOnline = isOnline;
    m_refusal = refusal;
    Q_EMIT changed(isOnline);
}

} // namespace backend
