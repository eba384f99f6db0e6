#pragma once

#include "authsetting/services/Services.h"
#include "tests/support/fakes/FakeServices.h"

#include <QStringList>

#include <functional>

/// A user's configuration that lets a test look on while a page reads it.
class NotingUser : public FakeUserConfig
{
public:
    boost::shared_ptr<GW::CAccount> getAccountData(QString key) override
    {
        askedKeys.append(key);
        return FakeUserConfig::getAccountData(key);
    }

    bool isSubAccount(QString key) const override
    {
        if (onRead)
            onRead();
        return FakeUserConfig::isSubAccount(key);
    }

    QStringList askedKeys;
    /// Runs whenever a page asks for an account's relations, as every reload does.
    std::function<void()> onRead;
};

/// The fakes with such a user among them.
struct NotedServices
{
    NotedServices()
    {
        GW::installServices(&fakes.client, &user, &fakes.config, &fakes.messages, &fakes.time);
    }

    FakeServices fakes;
    NotingUser user;
};
