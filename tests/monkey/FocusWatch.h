#pragma once

#include "tests/monkey/Action.h"
#include "tests/monkey/Failure.h"

class OpenDialog;

namespace monkey {

/// Watches where the keyboard's input goes while nothing stands in front of the dialog.
class FocusWatch
{
public:
    /// Call it at rest after each action.
    Failure check(const OpenDialog& dialog, const Action& action);
    void dialogClosed() { m_onClose = false; }

private:
    /// The user himself has gone to the button "关闭".
    bool m_onClose = false;
};

} // namespace monkey
