#pragma once

#include "tests/monkey/Action.h"
#include "tests/monkey/SlowClient.h"
#include "tests/support/fakes/FakeConfig.h"
#include "tests/support/fakes/FakeMsgService.h"
#include "tests/support/fakes/FakeTimeService.h"
#include "tests/support/fakes/FakeUserConfig.h"

namespace monkey {

/// The services around the dialog and what happens in them. Every account has a number of its own
/// that stands in every name it is ever shown under. Installed while the object lives.
class World
{
public:
    World();
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    /// Does one of the actions that are not the user's or the host's.
    void apply(const Action& action);

    /// Answers an open request; `how` as in Action::Answer.
    void answer(int index, bool ok, int how);

    /// The account with this number, null when there is none any more.
    boost::shared_ptr<GW::CAccount> account(const QString& number) const;
    /// The grantee of its present grant, empty without one.
    QString granteeOf(const QString& number) const;
    static QString secretOf(const QString& number);
    QString keyAt(int index) const;
    QString userAt(int index) const;

    SlowClient client;
    FakeUserConfig user;
    FakeConfig config;
    FakeMsgService messages;
    FakeTimeService time;

private:
    void addAccount(int type, mbservice::EAuthType state);
    void setState(int index, int state);
    void grant(int index, const QString& grantee, const GW::CAuthLimit& limit);
    void free(int index);
    void replace(int index, const std::function<void(GW::CAccount&)>& change);
    int indexOf(const mbservice::CAccountInfo& account) const;
    void takeEffect(const Call& call);
    void onRead();
    void onRequest(int index);

    int m_nextNumber = 1001;
    int m_nextUser = 1;
    int m_nextRef = 1;
    int m_readsToReload = 0;
    bool m_dropInRead = false;
    bool m_answerInside = false;
    bool m_insideOk = false;
};

/// The number in a name of an account, empty without one.
QString numberIn(const QString& name);

} // namespace monkey
