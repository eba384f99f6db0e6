#include "authsetting/shell/AuthSettingTabPage.h"

#include "authsetting/shell/AuthSettingEvents.h"
#include "utils/Clock.h"

#include <QTimer>

#include <cfloat>
#include <cmath>
#include <utility>

namespace GW {

namespace {

// A busy bar that shows for less than this cannot be read.
constexpr double shortestBusySeconds = 0.7;
constexpr double tolerance = 1e-5;
constexpr double noRequestYet = DBL_MAX;

} // namespace

IAuthSettingTabPage::IAuthSettingTabPage(int pageId, int subPageId, int tabPageId, QWidget* parent)
    : CBaseWidget(parent), m_pageId(pageId), m_subPageId(subPageId), m_tabPageId(tabPageId),
      m_requestStart(noRequestYet)
{
    setObjectName(QStringLiteral("halden_i_settingpage"));
    setFocusPolicy(Qt::StrongFocus);
}

IAuthSettingTabPage::~IAuthSettingTabPage() = default;

void IAuthSettingTabPage::setKey(QString key)
{
    m_key = std::move(key);
}

void IAuthSettingTabPage::beginRequest()
{
    setWaiting(true);
    m_requestStart = utils::clock();
}

void IAuthSettingTabPage::showProgress(qsizetype answered, qsizetype total)
{
    constexpr qsizetype largeBatch = 100;
    constexpr qsizetype mostSteps = 200;
    // Nobody reads more steps, and each is painted.
    if (total > largeBatch && answered <= total && answered % (1 + total / mostSteps) == 0)
        deliverEvent(EVENT_SHOW_PROGRESS, static_cast<int>(answered), static_cast<int>(total),
                     QString(), nullptr);
}

void IAuthSettingTabPage::finishRequest(boost::function<void()> completion)
{
    const double now = utils::clock();
    const bool requested = std::fabs(m_requestStart - noRequestYet) > tolerance;
    if (requested && now - m_requestStart - shortestBusySeconds < -tolerance) {
        m_pendingCompletion = completion;
        const int rest = static_cast<int>((shortestBusySeconds - now + m_requestStart) * 1000);
        QTimer::singleShot(rest, this, &IAuthSettingTabPage::slotTimerEnable);
        return;
    }
    setWaiting(false);
    completion();
}

void IAuthSettingTabPage::slotTimerEnable()
{
    setWaiting(false);
    // A copy, because the completion may begin and finish another request.
    const boost::function<void()> completion = m_pendingCompletion;
    completion();
}

void IAuthSettingTabPage::setWaiting(bool waiting)
{
    deliverEvent(EVENT_SET_WAITING, m_tabPageId, waiting ? 1 : 0, QString(), nullptr);
}

} // namespace GW
