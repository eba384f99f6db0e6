#include "authsetting/shell/DialogSizes.h"

#include "kit/dialogs/BaseDialog.h"

#include <QGuiApplication>
#include <QScreen>

namespace GW {

using SizeSet = KZ::CUiResource::SizeSet;

QSize dialogSize(const KZ::CBaseDialog& dialog, SizeSet set)
{
    const auto size = [set](const char* key) {
        return KZ::CUiResource::getSize(QString::fromLatin1(key), set);
    };
    const int margins = 3 * size("gw_siz_setting_margin");
    const int frame = 2 * dialog.borderWidth();
    return {size("gw_siz_setting_inner_right_width") + margins + frame +
                size("gw_siz_setting_inner_left_width"),
            dialog.titleBarHeight() + frame + margins + size("gw_siz_setting_inner_bottom_height") +
                size("gw_siz_setting_inner_top_height")};
}

QRect availableArea(const QWidget* parent)
{
    const QScreen* screen = parent ? parent->window()->screen() : QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect();
}

void fitDialog(KZ::CBaseDialog* dialog, const QRect& available)
{
    const QSize standard = dialogSize(*dialog, SizeSet::Standard);
    const bool fits =
        standard.width() <= available.width() && standard.height() <= available.height();
    const SizeSet set = fits ? SizeSet::Standard : SizeSet::Compact;
    KZ::CUiResource::setSizeSet(set);
    if (!available.contains(QRect(dialog->pos(), dialogSize(*dialog, set))))
        dialog->setAttribute(Qt::WA_Moved, false);
}

} // namespace GW
