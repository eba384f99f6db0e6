#include "kit/widgets/MediumNormalButton.h"

namespace KZ {

CMediumNormalButton::CMediumNormalButton(int id, int command, QWidget* parent)
    : CButton(id, command, parent)
{
    takeHintSize();
}

CMediumNormalButton::CMediumNormalButton(int id, QWidget* parent)
    : CMediumNormalButton(id, 0, parent)
{
}

void CMediumNormalButton::setPrimary(bool primary)
{
    m_primary = primary;
    update();
}

CButton::Look CMediumNormalButton::look() const
{
    return m_primary || !iconKey().isEmpty() ? Look::Primary : Look::Normal;
}

} // namespace KZ
