#include "authsetting/services/AuthType.h"

namespace GW {

namespace {

QString stateText(mbservice::EAuthType type)
{
    switch (type) {
    case mbservice::AUTH_TYPE_NOT_GRANTED:
        return QStringLiteral("未授权");
    case mbservice::AUTH_TYPE_GRANTED_TO_ME:
        return QStringLiteral("被授权");
    case mbservice::AUTH_TYPE_GRANTED_TO_OTHER:
        return QStringLiteral("已授权");
    case mbservice::AUTH_TYPE_UNKNOWN:
        break;
    }
    return QStringLiteral("未知状态");
}

} // namespace

QString authTypeToString(mbservice::EAuthType type, QString user)
{
    const QString text = stateText(type);
    if (user.isEmpty())
        return text;
    return text + QStringLiteral("(") + user + QStringLiteral(")");
}

const char* authTypeToColorKey(mbservice::EAuthType type)
{
    switch (type) {
    case mbservice::AUTH_TYPE_NOT_GRANTED:
        return "clr_auth_type_not_granted";
    case mbservice::AUTH_TYPE_GRANTED_TO_ME:
        return "clr_auth_type_granted_to_me";
    case mbservice::AUTH_TYPE_GRANTED_TO_OTHER:
        return "clr_auth_type_granted_to_other";
    case mbservice::AUTH_TYPE_UNKNOWN:
        break;
    }
    return "clr_auth_type_unknown";
}

} // namespace GW
