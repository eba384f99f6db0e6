#include "host/client/AccountMessages.h"

#include <utility>

namespace host {

AccountMessages::AccountMessages(std::function<QDateTime()> clock, QObject* parent)
    : QObject(parent), m_clock(std::move(clock))
{
}

int AccountMessages::showAccountMsg(QString text, QString accountKey, GW::EMsgTypeDef /*type*/,
                                    mbservice::MsgLevel level)
{
    if (m_messages.size() >= capacity)
        m_messages.removeFirst();
    m_messages.append({m_clock(), std::move(accountKey), std::move(text), level});
    Q_EMIT messageAdded();
    return 0;
}

} // namespace host
