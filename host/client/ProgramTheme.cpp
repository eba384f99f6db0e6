#include "host/client/ProgramTheme.h"

#include "kit/resources/UiResource.h"

#include <QApplication>
#include <QStyleFactory>

namespace host {

ProgramTheme::ProgramTheme()
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    takeTheme();
}

ProgramTheme::~ProgramTheme() = default;

void ProgramTheme::onUiResourceChanged()
{
    takeTheme();
}

void ProgramTheme::takeTheme()
{
    QApplication::setPalette(KZ::CUiResource::palette());
    QApplication::setFont(KZ::CUiResource::getFont(QStringLiteral("fnt_default_normal")));
}

} // namespace host
