#include "authsetting/shell/BusyCount.h"

#include "kit/resources/UiResource.h"
#include "kit/widgets/BusyBar.h"

#include <algorithm>

namespace GW {

CBusyCount::CBusyCount(const QWidget* text, KZ::CBusyBar* bar, QWidget* parent)
    : CSimpleTextWidget(QString(), parent), m_text(text), m_bar(bar)
{
    setObjectName(QStringLiteral("halden_progress_count"));
    hide();
}

void CBusyCount::showCount(int answered, int total)
{
    m_bar->setCount(answered, total);
    setText(m_bar->countText());
    place();
    show();
}

void CBusyCount::clear()
{
    hide();
    m_bar->setCount(0, 0);
}

void CBusyCount::place()
{
    const int gap = KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_list_space"));
    const int right = m_bar->geometry().right() + 1 - width();
    move(std::max(right, m_text->geometry().right() + 1 + gap), m_text->y());
}

} // namespace GW
