#pragma once

#include <QByteArray>

/// What a proxy does to the traffic at the moment. Belongs to the proxy's thread.
struct ProxyRules
{
    bool swallowsToServer = false;
    bool swallowsToClient = false;
    bool dropsNotices = false;
    int delayMs = 0;
    /// The next request with this text reaches the server, but its reply gets lost.
    QByteArray lostReplyOf;
    int lostReplies = 0;
    int droppedNotices = 0;
};
