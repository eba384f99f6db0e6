#pragma once

#include "authsetting/services/MsgService.h"
#include "host/client/AccountMessage.h"

#include <QList>
#include <QObject>

#include <functional>

namespace host {

/// The messages about the signed-in user's accounts, as the dialog and the client report them.
/// They last as long as he is signed in. GUI thread only.
class AccountMessages : public QObject, public GW::CMsgService
{
    Q_OBJECT

public:
    /// The oldest messages beyond this number are forgotten.
    static constexpr int capacity = 20000;

    /// `clock` stamps the messages, in the exchange time zone.
    explicit AccountMessages(std::function<QDateTime()> clock, QObject* parent = nullptr);

    int showAccountMsg(QString text, QString accountKey, GW::EMsgTypeDef type,
                       mbservice::MsgLevel level) override;

    /// Oldest first.
    const QList<AccountMessage>& messages() const { return m_messages; }

Q_SIGNALS:
    /// A message has come; emitted for each.
    void messageAdded();

private:
    std::function<QDateTime()> m_clock;
    QList<AccountMessage> m_messages;
};

} // namespace host
