#pragma once

namespace KZ {

/// Numbers of the events that the kit's own widgets deliver. param1 is the identifier given to the
/// widget at construction and data the widget itself (a QWidget*) unless stated otherwise. All of
/// them report what the user did; what the program sets by a function call delivers nothing.
enum EventId : int {
    /// A button was clicked; param2 = the button's command.
    EVENT_BUTTON_CLICKED = 5,
    /// The user chose a table row; param1 = row identifier, param2 = table identifier.
    EVENT_ROW_SELECTED = 41,
    /// The user finished editing a cell; param1 = row identifier, param2 = column, text = what he
    /// typed, data = a CCellEdit* that the receiver may rewrite or refuse.
    EVENT_CELL_EDITED = 45,
    /// A tab was activated, by the user or by activateTab(); param2 = the tab's index.
    EVENT_TAB_ACTIVATED = 57,
    /// A check box was ticked or unticked; param2 = 1 ticked, 0 unticked.
    EVENT_CHECK_TOGGLED = 59,
    /// The text of an editor changed by a keystroke; text = the new text.
    EVENT_TEXT_EDITED = 67,
    /// The user finished changing the text of an editor; text = the new text.
    EVENT_TEXT_COMMITTED = 68,
    /// A date editor's date changed.
    EVENT_DATE_CHANGED = 87,
    /// An editor lost the focus; text = its text.
    EVENT_FOCUS_LEFT = 88,
};

} // namespace KZ
