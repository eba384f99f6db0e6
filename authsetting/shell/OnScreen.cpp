#include "authsetting/shell/OnScreen.h"

#include "authsetting/shell/AuthSettingPage.h"

namespace GW {

bool isHosted(const QWidget* page)
{
    const QWidget* ancestor = page ? page->parentWidget() : nullptr;
    while (ancestor && !dynamic_cast<const CAuthSettingPage*>(ancestor))
        ancestor = ancestor->parentWidget();
    return ancestor != nullptr;
}

bool isUserLooking(const QWidget* page, const void* sender)
{
    return page->isVisible() && (sender || isHosted(page));
}

} // namespace GW
