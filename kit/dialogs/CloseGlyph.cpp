#include "kit/dialogs/CloseGlyph.h"

#include "kit/resources/StylePainter.h"

#include <QPainter>

namespace KZ {

CCloseGlyph::CCloseGlyph(int id, QWidget* parent) : CPushButton(id, parent)
{
    setFocusPolicy(Qt::NoFocus);
    setImageKey(QStringLiteral("gw_img_kit_close"));
    setToolTip(QStringLiteral("关闭 (Esc)"));
    setAccessibleName(QStringLiteral("关闭"));
}

void CCloseGlyph::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const bool lit = isEnabled() && (isDown() || underMouse());
    if (lit)
        CStylePainter::fill(&painter, rect(), QStringLiteral("clr_close_hover"));
    CStylePainter::icon(&painter, rect(), imageKey(),
                        lit ? QStringLiteral("clr_close_text") : QString(), isEnabled());
}

} // namespace KZ
