#include "authsetting/authorize/GrantMenu.h"

namespace GW {

CGrantMenu::CGrantMenu(QWidget* parent)
    : CMenu(parent), m_file(addAction(QStringLiteral("文件授权"))),
      m_server(addAction(QStringLiteral("服务器授权")))
{
    // Queued, because the menu hides before it triggers what was chosen.
    connect(this, &QMenu::aboutToHide, this, &CGrantMenu::closed, Qt::QueuedConnection);
}

void CGrantMenu::popUpBelow(const QWidget* button, int gap)
{
    popup(button->mapToGlobal(QPoint(0, button->height() + gap)));
}

} // namespace GW
