#pragma once

class QWidget;

namespace GW {

/// Whether `page` stands in a page of the dialog, and not alone.
bool isHosted(const QWidget* page);

/// Whether the user acts on what `page` shows, so that nothing else may be sent than what he sees:
/// it is visible, and either stands in the dialog or a control of it, `sender`, was used.
bool isUserLooking(const QWidget* page, const void* sender = nullptr);

} // namespace GW
