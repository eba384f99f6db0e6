#include "authsetting/authorize/GrantChoice.h"

#include "authsetting/authorize/GrantFilePrompt.h"
#include "authsetting/authorize/GrantMenu.h"
#include "authsetting/shell/OnScreen.h"

#include <utility>

namespace GW {

CGrantChoice::CGrantChoice(Page page)
    : m_page(std::move(page)), m_menu(new CGrantMenu(m_page.widget))
{
    connect(m_menu->fileAction(), &QAction::triggered, this, [this] { choose(false); });
    connect(m_menu->serverAction(), &QAction::triggered, this, [this] { choose(true); });
    connect(m_menu, &CGrantMenu::closed, this, [this] {
        m_check = nullptr;
        m_hold.reset();
    });
}

void CGrantChoice::popUpBelow(const QWidget* button, int gap, const void* sender)
{
    if (isUserLooking(m_page.widget, sender)) {
        m_check = m_page.look();
        m_hold.emplace(m_page.reloads);
    }
    m_menu->popUpBelow(button, gap);
}

void CGrantChoice::choose(bool toServer)
{
    const Check check = std::exchange(m_check, nullptr);
    if (check && !check())
        m_page.tellChanged();
    else
        m_page.grant(toServer);
}

CGrantChoice::FilePrompt::FilePrompt(const CGrantChoice& choice)
    : m_page(choice.m_page), m_widget(m_page.widget)
{
    if (!isUserLooking(m_widget))
        return;
    m_check = m_page.look();
    m_hold.emplace(m_page.reloads);
}

QString CGrantChoice::FilePrompt::chooseFile()
{
    const QString path = chooseGrantFile(m_widget);
    if (!m_widget || path.isEmpty() || !m_check || m_check())
        return m_widget ? path : QString();
    m_page.tellChanged();
    return {};
}

bool CGrantChoice::FilePrompt::askPassword(const std::function<void(const QString&)>& grant)
{
    // Copies, because the answer comes from inside a loop that may outlive the page.
    return askGrantPassword(m_widget, [page = m_page, check = m_check, grant](QString password) {
        if (check && !check())
            page.tellChanged();
        else
            grant(password);
    });
}

} // namespace GW
