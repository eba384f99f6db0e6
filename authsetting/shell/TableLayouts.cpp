#include "authsetting/shell/TableLayouts.h"

#include "authsetting/services/Services.h"
#include "authsetting/services/UserConfig.h"
#include "kit/table/OddEvenRowTable.h"

namespace GW {

void restoreTableLayout(KZ::COddEvenRowTable* table)
{
    if (const CUserConfig* user = getUserConfig())
        table->loadConfigStr(user->tableLayouts.value(table->getID()));
}

void saveTableLayout(const KZ::COddEvenRowTable* table)
{
    if (CUserConfig* user = getUserConfig())
        user->tableLayouts.insert(table->getID(), table->saveConfigStr());
}

} // namespace GW
