#include "authsetting/shell/ResultTip.h"

#include "kit/tips/MessageTip.h"

namespace GW {

void showResultTip(QWidget* anchor, const QString& text, int kind, quint64 request)
{
    constexpr int alignment = 0x41;
    constexpr int level = 2;
    constexpr int hundredths = 300;
    KZ::CMessageTip::showTip(anchor, alignment, text, kind, level, hundredths, request);
}

void showChangedTip(QWidget* control)
{
    constexpr int hintKind = 2;
    showResultTip(control, QStringLiteral("内容已变化，请核对后再操作"), hintKind);
}

quint64 newRequestNumber()
{
    static quint64 last = 0;
    return ++last;
}

} // namespace GW
