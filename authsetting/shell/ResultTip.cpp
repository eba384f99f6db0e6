#include "authsetting/shell/ResultTip.h"

#include "kit/tips/MessageTip.h"

namespace GW {

void showResultTip(QWidget* anchor, const QString& text, int kind)
{
    constexpr int alignment = 0x41;
    constexpr int level = 2;
    constexpr int hundredths = 300;
    KZ::CMessageTip::showTip(anchor, alignment, text, kind, level, hundredths);
}

} // namespace GW
