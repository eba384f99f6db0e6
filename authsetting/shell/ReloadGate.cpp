#include "authsetting/shell/ReloadGate.h"

#include "authsetting/shell/AuthSettingTabPage.h"

namespace GW {

struct CReloadGate::State
{
    /// Null once the page goes.
    IAuthSettingTabPage* page = nullptr;
    int holds = 0;
    bool filling = false;
    /// A reload was asked for that has not happened.
    bool due = false;
};

CReloadGate::CReloadGate(IAuthSettingTabPage* page) : m_state(std::make_shared<State>())
{
    m_state->page = page;
}

CReloadGate::~CReloadGate()
{
    m_state->page = nullptr;
}

void CReloadGate::run(const std::function<void()>& fill)
{
    if (m_state->holds > 0)
        m_state->due = true;
    else
        runAnyway(fill);
}

void CReloadGate::runAnyway(const std::function<void()>& fill)
{
    const std::shared_ptr<State> state = m_state;
    if (state->filling) {
        state->due = true;
        return;
    }
    state->filling = true;
    // A service that tells of a change at every read would keep the page filling for ever.
    constexpr int mostRuns = 2;
    for (int runs = 0; state->page && runs < mostRuns; ++runs) {
        state->due = false;
        fill();
        if (!state->due)
            break;
    }
    state->filling = false;
    if (state->page && state->due)
        QMetaObject::invokeMethod(
            state->page, [state] { follow(state); }, Qt::QueuedConnection);
}

void CReloadGate::follow(const std::shared_ptr<State>& state)
{
    if (!state->page || !state->due || state->holds > 0)
        return;
    state->due = false;
    state->page->reloadData();
    if (state->page)
        state->page->onActive();
}

CReloadGate::Hold::Hold(const CReloadGate& gate) : m_state(gate.m_state)
{
    ++m_state->holds;
}

CReloadGate::Hold::~Hold()
{
    --m_state->holds;
    if (!m_state->filling)
        follow(m_state);
}

} // namespace GW
