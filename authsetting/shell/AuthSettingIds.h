#pragma once

#include "authsetting/AuthSettingExport.h"

namespace GW {

/// Names of the places in the dialog, for CAuthSettingDialog::showSettingPage().
///
/// A page is a top-level node of the dialog's tree, a sub-page one account or one sub-user below
/// it; INT_MAX in place of a sub-page means the page itself. A sub-page is its page * 100 + n, a
/// tab its page * 10000 + n or its sub-page * 100 + n. The sub-user's place and the batch tab stand
/// outside that scheme and keep their values, because hosts have them compiled in; so two tabs
/// share a number, and a tab number alone names nothing.

extern AUTHSETTING_EXPORT const int ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE;
extern AUTHSETTING_EXPORT const int ID_FUTURE_AUTHSETTING_PAGE_IMPORT_AUTHORIZATION;
extern AUTHSETTING_EXPORT const int ID_FUTURE_AUTHSETTING_PAGE_RESTRICTEDUSERS;

extern AUTHSETTING_EXPORT const int ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_ACCOUNT;
extern AUTHSETTING_EXPORT const int ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_AUTHORIZATION;
extern AUTHSETTING_EXPORT const int ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_RESTRICTEDUSER;

extern AUTHSETTING_EXPORT const int ID_FUTURE_AUTHSETTING_TABPAGE_ACCOUNTS_OVERVIEW;
extern AUTHSETTING_EXPORT const int ID_FUTURE_AUTHSETTING_TABPAGE_ACCOUNTS_AUTHORIZE;
extern AUTHSETTING_EXPORT const int ID_FUTURE_AUTHSETTING_TABPAGE_IMPORT_AUTHORIZATION;
extern AUTHSETTING_EXPORT const int ID_FUTURE_AUTHSETTING_TABPAGE_RESTRICTEDUSERS_MANAGE;
extern AUTHSETTING_EXPORT const int ID_FUTURE_AUTHSETTING_TABPAGE_SINGLE_ACCOUNT_AUTHORIZE;
extern AUTHSETTING_EXPORT const int ID_FUTURE_AUTHSETTING_TABPAGE_SINGLE_ACCOUNT_ADVANCED;
extern AUTHSETTING_EXPORT const int ID_FUTURE_AUTHSETTING_TABPAGE_SINGLE_AUTHORIZATION_AUTHORIZE;
extern AUTHSETTING_EXPORT const int ID_FUTURE_AUTHSETTING_TABPAGE_SINGLE_RESTRICTEDUSER_GENERAL;

} // namespace GW
