#include "authsetting/shell/BusyCount.h"

#include "kit/resources/UiResource.h"

#include <QLocale>
#include <QProgressBar>

#include <algorithm>

namespace GW {

CBusyCount::CBusyCount(const QWidget* text, QProgressBar* bar, QWidget* parent)
    : CSimpleTextWidget(QString(), parent), m_text(text), m_bar(bar)
{
    setObjectName(QStringLiteral("halden_progress_count"));
    hide();
}

void CBusyCount::showCount(int answered, int total)
{
    const QLocale locale(QLocale::Chinese, QLocale::China);
    setText(locale.toString(answered) + QStringLiteral(" / ") + locale.toString(total));
    m_bar->setAccessibleDescription(text());
    place();
    show();
}

void CBusyCount::clear()
{
    hide();
    m_bar->setAccessibleDescription(QString());
}

void CBusyCount::place()
{
    const int gap = KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_list_space"));
    const int right = m_bar->geometry().right() + 1 - width();
    move(std::max(right, m_text->geometry().right() + 1 + gap), m_text->y());
}

} // namespace GW
