#include "kit/widgets/Menu.h"

#include "kit/resources/KitStyle.h"
#include "kit/resources/UiResource.h"

namespace KZ {

CMenu::CMenu(QWidget* parent) : QMenu(parent)
{
    setStyle(kitStyle());
    setPalette(CUiResource::palette());
    setFont(CUiResource::getFont(QStringLiteral("fnt_default_normal")));
}

CMenu::~CMenu() = default;

void CMenu::onUiResourceChanged()
{
    setPalette(CUiResource::palette());
    update();
}

} // namespace KZ
