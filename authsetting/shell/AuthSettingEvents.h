#pragma once

namespace GW {

/// Numbers of the events that the module's own widgets deliver up the kit's event chain.
enum AuthSettingEvent : int {
    /// A tab page began (param2 = 1) or ended (0) waiting for the server; param1 = its tab number.
    EVENT_SET_WAITING = 1097,
    /// Show page param1, sub-page param2 with the key `text`.
    EVENT_SHOW_PAGE = 1098,
    /// The page's own key becomes `text`; its tab pages keep theirs.
    EVENT_SET_PAGE_KEY = 1100,
    /// Select the tree node of page param1, sub-page param2 (INT_MAX: the page's own node) and key
    /// `text`.
    EVENT_ACTIVATE_NODE = 1101,
    /// Grants, accounts or sub-users changed: build the tree anew.
    EVENT_RELOAD_NAVIGATOR = 1102,
    /// Cancel the grant in the table row with the identifier param1; data = the row's widget.
    EVENT_CANCEL_AUTH = 1103,
    /// Of the requests that a tab page waits for, param1 of param2 are answered.
    EVENT_SHOW_PROGRESS = 1104,
    /// The tab in front was activated and has been filled.
    EVENT_TAB_SHOWN = 1105,
};

} // namespace GW
