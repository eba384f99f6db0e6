#pragma once

class QWidget;

namespace KZ {
class CMediumNormalButton;
}

namespace GW {

/// A new button "授权" with the identifier `id`, in the look that it has on every page.
KZ::CMediumNormalButton* newGrantButton(int id, QWidget* parent);

} // namespace GW
