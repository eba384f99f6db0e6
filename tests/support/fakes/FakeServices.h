#pragma once

#include "tests/support/fakes/FakeAuthClient.h"
#include "tests/support/fakes/FakeConfig.h"
#include "tests/support/fakes/FakeMsgService.h"
#include "tests/support/fakes/FakeTimeService.h"
#include "tests/support/fakes/FakeUserConfig.h"

/// All five services as fakes, installed while the object lives. Destroy every dialog and page
/// before it. The logged-in user is "trader01".
class FakeServices
{
public:
    FakeServices();
    ~FakeServices();
    FakeServices(const FakeServices&) = delete;
    FakeServices& operator=(const FakeServices&) = delete;

    /// Gives `account` a grant to `grantee` over these days, as the client would report it.
    void grant(const boost::shared_ptr<GW::CAccount>& account, const QString& grantee,
               const QDate& first, const QDate& last);

    FakeAuthClient client;
    FakeUserConfig user;
    FakeConfig config;
    FakeMsgService messages;
    FakeTimeService time;
};
