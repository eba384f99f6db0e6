#include "authsetting/authorize/GranteeList.h"

#include "authsetting/services/AuthClient.h"
#include "authsetting/services/Services.h"
#include "kit/widgets/ComboBox.h"

#include <utility>

namespace GW {

void fillGranteeBox(KZ::CComboBox* box)
{
    CAuthClient* client = getAuthClient();
    QVector<QString> subUsers;
    if (!client || !client->getSubUserList(subUsers))
        return;
    box->clear();
    for (const QString& subUser : std::as_const(subUsers)) {
        if (client->isSubUserActive(subUser))
            box->addItem(subUser);
    }
    box->clearEditText();
}

} // namespace GW
