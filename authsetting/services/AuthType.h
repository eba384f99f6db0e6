#pragma once

#include "authsetting/AuthSettingExport.h"

#include <QString>

namespace mbservice {

/// Authorization state of an account as its user sees it. Other values may come from a service;
/// they are shown as an unknown state and never acted upon.
enum EAuthType : int {
    AUTH_TYPE_UNKNOWN = 0,
    /// The user's own account, granted to nobody: the only state in which it can be granted.
    AUTH_TYPE_NOT_GRANTED = 1,
    /// Another user's account, granted to the user.
    AUTH_TYPE_GRANTED_TO_ME = 2,
    /// The user's own account, granted to somebody.
    AUTH_TYPE_GRANTED_TO_OTHER = 3,
};

} // namespace mbservice

namespace GW {

/// Text of an authorization state; a non-empty `user` is appended in brackets as the other side
/// of the grant. May be called from any thread.
AUTHSETTING_EXPORT QString authTypeToString(mbservice::EAuthType type, QString user);

/// Colour resource key for the text of a state; a string with static storage, never null.
/// May be called from any thread.
AUTHSETTING_EXPORT const char* authTypeToColorKey(mbservice::EAuthType type);

} // namespace GW
