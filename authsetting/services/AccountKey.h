#pragma once

#include "authsetting/AuthSettingExport.h"
#include "authsetting/services/AccountInfo.h"

#include <QString>

namespace GW {

/// The key that identifies an account system-wide, made of the four fields that identify it
/// (platform, broker, sub-type, number). Two records have equal keys exactly when they denote the
/// same account. May be called from any thread, like the two below.
AUTHSETTING_EXPORT QString genAccountKeyQs(const mbservice::CAccountInfo& account);

/// The record behind `key` with the four identifying fields filled and the others at their
/// defaults; a default record, with an empty account number, for a text that is no account key.
AUTHSETTING_EXPORT mbservice::CAccountInfo keyToAccountInfo(QString key);

/// The account as messages show it to the user: its alias when it has one, else its number.
AUTHSETTING_EXPORT QString accountDisplayIDQs(const mbservice::CAccountInfo& account);

} // namespace GW
