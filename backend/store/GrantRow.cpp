#include "backend/store/GrantRow.h"

#include "authsetting/services/AccountKey.h"
#include "backend/store/Database.h"

namespace backend {

bool GrantRow::read(Database& database, const QString& reference)
{
    Statement row = database.statement("grants.by_reference");
    if (!row.run(reference).next())
        return false;
    id = row.integer(0);
    grantorId = row.integer(1);
    granteeId = row.integer(2);
    accountId = row.integer(3);
    firstDay = row.day(4);
    lastDay = row.day(5);
    ratio = row.isNull(6) ? GW::CAuthLimit::noMarginRatio : row.real(6);
    source = static_cast<GrantSource>(row.number(7));
    state = static_cast<GrantState>(row.number(8));
    redeemed = !row.isNull(9);
    ownerId = row.integer(10);
    mbservice::CAccountInfo account;
    account.platformId = row.number(11);
    account.brokerId = row.bytes(12);
    account.accountSubType = row.number(13);
    account.accountId = row.bytes(14);
    accountKey = GW::genAccountKeyQs(account);
    accountSecret = row.text(15);
    granteeName = row.text(16);
    granteeEnabled = row.flag(17);
    return true;
}

} // namespace backend
