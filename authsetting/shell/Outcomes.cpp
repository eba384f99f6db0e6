#include "authsetting/shell/Outcomes.h"

#include "authsetting/shell/AuthSettingTabPage.h"

#include <QPointer>

#include <utility>

namespace GW {

void COutcomes::finish(quint64 request, std::function<void()> show)
{
    if (request != unkept)
        m_due.insert(request, show);
    m_page->finishRequest([this, request, show = std::move(show)] { run(request, show); });
}

void COutcomes::run(quint64 request, const std::function<void()>& show)
{
    const QPointer<QWidget> page = m_page;
    m_due.remove(request);
    show();
    while (page && !m_due.isEmpty()) {
        const std::function<void()> next = m_due.take(m_due.firstKey());
        next();
    }
}

} // namespace GW
