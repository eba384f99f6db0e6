#pragma once

#include "authsetting/services/MsgService.h"

#include <QVector>

/// Records the messages it was asked to show.
class FakeMsgService : public GW::CMsgService
{
public:
    struct Message
    {
        QString text;
        QString accountKey;
        GW::EMsgTypeDef type;
        mbservice::MsgLevel level;
    };

    int showAccountMsg(QString text, QString accountKey, GW::EMsgTypeDef type,
                       mbservice::MsgLevel level) override
    {
        messages.append({text, accountKey, type, level});
        return 0;
    }

    QVector<Message> messages;
};
