#include "tests/support/fakes/FakeServices.h"

#include "authsetting/services/Services.h"
#include "utils/ExchangeTimeZone.h"

#include <boost/make_shared.hpp>

FakeServices::FakeServices()
{
    user.userName = QStringLiteral("trader01");
    GW::installServices(&client, &user, &config, &messages, &time);
}

FakeServices::~FakeServices()
{
    GW::installServices(nullptr, nullptr, nullptr, nullptr, nullptr);
}

void FakeServices::grant(const boost::shared_ptr<GW::CAccount>& account, const QString& grantee,
                         const QDate& first, const QDate& last)
{
    auto detail = boost::make_shared<GW::CAuthDetail>();
    detail->grantRef = QStringLiteral("ref-") + account->key();
    detail->grantor = user.userName;
    detail->grantee = grantee;
    detail->account = *account;
    const QTimeZone zone = utils::exchangeTimeZone();
    detail->limit.startTime = static_cast<qint32>(first.startOfDay(zone).toSecsSinceEpoch());
    detail->limit.endTime = static_cast<qint32>(last.startOfDay(zone).toSecsSinceEpoch());
    account->authType = mbservice::AUTH_TYPE_GRANTED_TO_OTHER;
    client.grants.insert(account->key(), detail);
}
