#pragma once

class QWidget;

namespace KZ {

/// Whether the user could use the control now: it is visible and enabled, and no menu and no modal
/// dialog keeps him from it. Assistive tools can ask for a control that he cannot reach.
bool isInReach(const QWidget* control);

} // namespace KZ
