#include "kit/widgets/SmallNormalButton.h"

namespace KZ {

CSmallNormalButton::CSmallNormalButton(int id, int command, QWidget* parent)
    : CButton(id, command, parent)
{
    takeHintSize();
}

CSmallNormalButton::CSmallNormalButton(int id, QWidget* parent) : CSmallNormalButton(id, 0, parent)
{
}

QString CSmallNormalButton::heightKey() const
{
    return QStringLiteral("gw_siz_kit_small_button_height");
}

QString CSmallNormalButton::paddingKey() const
{
    return QStringLiteral("gw_siz_kit_small_button_padding");
}

} // namespace KZ
