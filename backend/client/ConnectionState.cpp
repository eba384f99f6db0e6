#include "backend/client/ConnectionState.h"

namespace backend {

void ConnectionState::set(bool isOnline)
{
    if (isOnline == m_isOnline)
        return;
    m_isOnline = isOnline;
    Q_EMIT changed(isOnline);
}

} // namespace backend
