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

CButton::Look CMediumNormalButton::look() const
{
    return iconKey().isEmpty() ? Look::Normal : Look::Primary;
}

} // namespace KZ
