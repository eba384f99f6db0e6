#pragma once

namespace KZ {

/// Lets assistive tools meet the kit's widgets as what they are. Only classes of the kit are taken
/// care of; the widgets of the program around it stay as Qt tells them. Idempotent; needs an
/// application object, as every widget does.
void installAccessibleFactory();

} // namespace KZ
