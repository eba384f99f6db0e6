#include "authsetting/authorize/UserCheck.h"

#include "authsetting/services/AuthClient.h"
#include "authsetting/services/Services.h"

#include <QWidget>

namespace GW {

namespace {

// Whether the user has gone to another page; nobody has gone from one that was never in front.
bool isLeft(const QWidget* page)
{
    for (const QWidget* widget = page; widget && !widget->isWindow();
         widget = widget->parentWidget()) {
        if (widget->isHidden() && widget->testAttribute(Qt::WA_WState_ExplicitShowHide))
            return true;
    }
    return false;
}

} // namespace

CUserCheck::CUserCheck(const QWidget* page) : m_page(page) {}

void CUserCheck::ask(const QString& user)
{
    CAuthClient* client = getAuthClient();
    if (!client || user.isEmpty())
        return;
    m_asked.append(user);
    client->checkAuthuser(user);
}

bool CUserCheck::takeAnswer(const QString& user)
{
    return m_asked.removeOne(user) || !isLeft(m_page);
}

} // namespace GW
