#pragma once

#include "authsetting/services/MsgService.h"

#include <QStringList>

/// A host's message area that keeps the texts.
class HostMsgService : public GW::CMsgService
{
public:
    int showAccountMsg(QString text, QString, GW::EMsgTypeDef, mbservice::MsgLevel) override
    {
        texts.append(text);
        return 0;
    }

    QStringList texts;
};
