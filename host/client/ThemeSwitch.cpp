#include "host/client/ThemeSwitch.h"

#include "kit/resources/UiResource.h"

#include <QShortcut>
#include <QWidget>

namespace host {

void switchTheme()
{
    using KZ::CUiResource;
    CUiResource::setTheme(CUiResource::theme() == CUiResource::Theme::Light
                              ? CUiResource::Theme::Dark
                              : CUiResource::Theme::Light);
}

void addThemeShortcut(QWidget* window)
{
    auto* shortcut = new QShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+T")), window);
    QObject::connect(shortcut, &QShortcut::activated, window, [] { switchTheme(); });
}

} // namespace host
