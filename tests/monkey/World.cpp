#include "tests/monkey/World.h"

#include "authsetting/services/Services.h"
#include "kit/dates/DateConversions.h"

#include <QRegularExpression>

#include <boost/make_shared.hpp>

#include <thread>

namespace monkey {

namespace {

constexpr int firstAccounts = 7;
constexpr int mostAccounts = 14;
constexpr int mostUsers = 6;

template <class List>
int wrapped(int index, const List& list)
{
    const int size = static_cast<int>(list.size());
    return size == 0 ? -1 : ((index % size) + size) % size;
}

} // namespace

QString numberIn(const QString& name)
{
    static const QRegularExpression digits(QStringLiteral("\\d{4}"));
    return digits.match(name).captured();
}

World::World()
{
    user.userName = QStringLiteral("trader01");
    config.addPlatform(1, QStringLiteral("期货平台"));
    config.addStkPlatform(1, QStringLiteral("股票平台"));
    user.brokers.insert({1, QStringLiteral("9000")}, QStringLiteral("远山期货"));
    user.stkBrokers.insert({1, QStringLiteral("9000")}, QStringLiteral("临江证券"));
    for (int index = 0; index < firstAccounts; ++index)
        addAccount(1 + index % 2, mbservice::AUTH_TYPE_NOT_GRANTED);
    setState(1, 1);
    setState(3, 2);
    setState(5, 4);
    for (int index = 0; index < 3; ++index)
        apply({Action::AddUser, 0, 0, 0, {}});
    client.activeSubUsers = {client.subUsers.at(0), client.subUsers.at(1)};
    client.onRead = [this] { onRead(); };
    client.onRequest = [this](int index) { onRequest(index); };
    GW::installServices(&client, &user, &config, &messages, &time);
}

World::~World()
{
    GW::installServices(nullptr, nullptr, nullptr, nullptr, nullptr);
}

QString World::secretOf(const QString& number)
{
    return QStringLiteral("secret of ") + number;
}

void World::addAccount(int type, mbservice::EAuthType state)
{
    const QString number = QString::number(m_nextNumber++);
    user.addAccount(type, 1, "9000", number.toStdString(), state)->accountPrivate =
        secretOf(number).toStdString();
}

boost::shared_ptr<GW::CAccount> World::account(const QString& number) const
{
    for (const auto& account : user.accounts) {
        if (QString::fromStdString(account->accountId) == number)
            return account;
    }
    return {};
}

QString World::granteeOf(const QString& number) const
{
    const auto found = account(number);
    const auto grant = found ? client.grants.value(found->key()) : nullptr;
    return grant ? grant->grantee : QString();
}

QString World::keyAt(int index) const
{
    const int at = wrapped(index, user.accounts);
    return at < 0 ? QString() : user.accounts.at(at)->key();
}

QString World::userAt(int index) const
{
    return client.subUsers.value(wrapped(index, client.subUsers));
}

int World::indexOf(const mbservice::CAccountInfo& account) const
{
    for (int index = 0; index < user.accounts.size(); ++index) {
        if (mbservice::isSameAccount(*user.accounts.at(index), account))
            return index;
    }
    return -1;
}

void World::replace(int index, const std::function<void(GW::CAccount&)>& change)
{
    if (index < 0)
        return;
    auto changed = boost::make_shared<GW::CAccount>(*user.accounts.at(index));
    change(*changed);
    user.accounts[index] = changed;
}

void World::free(int index)
{
    if (index < 0)
        return;
    client.grants.remove(user.accounts.at(index)->key());
    replace(index,
            [](GW::CAccount& account) { account.authType = mbservice::AUTH_TYPE_NOT_GRANTED; });
}

void World::grant(int index, const QString& grantee, const GW::CAuthLimit& limit)
{
    if (index < 0)
        return;
    auto detail = boost::make_shared<GW::CAuthDetail>();
    detail->grantRef = QStringLiteral("live-%1").arg(m_nextRef++);
    detail->grantor = user.userName;
    detail->grantee = grantee;
    replace(index, [](GW::CAccount& account) {
        account.authType = mbservice::AUTH_TYPE_GRANTED_TO_OTHER;
    });
    detail->account = *user.accounts.at(index);
    detail->limit = limit;
    client.grants.insert(user.accounts.at(index)->key(), detail);
}

void World::setState(int index, int state)
{
    constexpr int received = 4;
    if (state == 0) {
        free(index);
        return;
    }
    const QDate today = time.now.date();
    GW::CAuthLimit limit;
    limit.startTime = KZ::qDateTimeToSecond(KZ::exchangeDayStart(today.addDays(1)));
    limit.endTime = KZ::qDateTimeToSecond(KZ::exchangeDayStart(today.addDays(2 + index)));
    if (state % 2 == 0)
        limit.availableMarginRatio = 0.5;
    const QStringList grantees{QStringLiteral("u1"), QStringLiteral("bob"), QStringLiteral("dave")};
    grant(index, grantees.at((state - 1) % 3), limit);
    if (state != received)
        return;
    const auto detail = client.grants.value(user.accounts.at(index)->key());
    detail->grantor = QStringLiteral("carol");
    detail->grantee = user.userName;
    replace(index,
            [](GW::CAccount& account) { account.authType = mbservice::AUTH_TYPE_GRANTED_TO_ME; });
}

void World::apply(const Action& action)
{
    const int at = wrapped(action.a, user.accounts);
    const int userIndex = wrapped(action.a, client.subUsers);
    switch (action.kind) {
    case Action::NextDay:
        time.now = time.now.addDays(action.a);
        break;
    case Action::SetState:
        if (at >= 0)
            setState(at, action.b);
        break;
    case Action::Add:
        if (user.accounts.size() < mostAccounts)
            addAccount(action.a, mbservice::AUTH_TYPE_NOT_GRANTED);
        break;
    case Action::Remove:
        if (at >= 0) {
            client.grants.remove(user.accounts.at(at)->key());
            user.accounts.removeAt(at);
        }
        break;
    case Action::Rename:
        replace(at, [&action](GW::CAccount& account) {
            account.accountAlias = "name " + std::to_string(action.b) + "/" + account.accountId;
        });
        break;
    case Action::Hide: {
        const QString key = keyAt(at);
        if (!user.subAccounts.remove(key))
            user.subAccounts.insert(key);
        break;
    }
    case Action::AddUser:
        if (client.subUsers.size() < mostUsers)
            client.subUsers.append(QStringLiteral("u%1").arg(m_nextUser++));
        break;
    case Action::RemoveUser:
        if (userIndex >= 0)
            client.activeSubUsers.remove(client.subUsers.takeAt(userIndex));
        break;
    case Action::ToggleUser:
        if (const QString name = userAt(action.a); !client.activeSubUsers.remove(name))
            client.activeSubUsers.insert(name);
        break;
    case Action::Answer:
        if (const QVector<int> open = client.open(); !open.isEmpty())
            answer(open.at(wrapped(action.a, open)), action.b == 1, action.c);
        return;
    case Action::Forget:
        if (const QVector<int> open = client.open(); !open.isEmpty())
            client.log[open.at(wrapped(action.a, open))].isForgotten = true;
        return;
    case Action::FailFiles:
        client.exportResult = action.a;
        client.importResult = action.a;
        return;
    case Action::ReloadInRead:
        m_readsToReload = action.a;
        m_dropInRead = action.b == 1;
        return;
    case Action::AnswerInside:
        m_answerInside = true;
        m_insideOk = action.b == 1;
        return;
    default:
        break;
    }
    if (action.c == 1 || action.kind == Action::Tell)
        Q_EMIT client.sigUiUpdateAuth();
}

void World::onRead()
{
    if (m_readsToReload == 0 || --m_readsToReload > 0)
        return;
    if (m_dropInRead && !user.accounts.isEmpty()) {
        client.grants.remove(user.accounts.constLast()->key());
        user.accounts.removeLast();
    }
    Q_EMIT client.sigUiUpdateAuth();
}

void World::onRequest(int index)
{
    Call& call = client.log[index];
    const int at = indexOf(call.account);
    call.wasFree = at >= 0 && user.accounts.at(at)->authType == mbservice::AUTH_TYPE_NOT_GRANTED;
    call.wasEnabled = client.activeSubUsers.contains(call.user);
    if (!m_answerInside)
        return;
    m_answerInside = false;
    answer(index, m_insideOk, 0);
}

void World::takeEffect(const Call& call)
{
    if (call.kind == Call::Grant && call.toServer)
        grant(indexOf(call.account), call.user, call.limit);
    else if (call.kind == Call::Cancel)
        free(indexOf(call.account));
    else if (call.kind == Call::SetUser && call.enable)
        client.activeSubUsers.insert(call.user);
    else if (call.kind == Call::SetUser)
        client.activeSubUsers.remove(call.user);
}

void World::answer(int index, bool ok, int how)
{
    constexpr int fromThread = 1;
    constexpr int changingNothing = 2;
    Call& open = client.log[index];
    if (!open.isOpen)
        return;
    open.isOpen = false;
    open.isGranted = ok && open.kind == Call::Grant;
    if (open.isGranted)
        open.ref = QStringLiteral("ref-%1").arg(index);
    const Call call = open;
    if (ok && how != changingNothing)
        takeEffect(call);
    const QString error = ok ? QString() : QStringLiteral("reason %1").arg(index);
    const QString importedKey = keyAt(index);
    const auto emitResult = [this, call, ok, error, importedKey] {
        mbservice::CAccountInfo account = call.account;
        account.accountPrivate.clear();
        if (call.kind == Call::Grant)
            Q_EMIT client.sigAddAuthResult(call.user, account, call.limit, call.ref, call.tag, ok,
                                           error, call.toServer);
        else if (call.kind == Call::Cancel)
            Q_EMIT client.sigDelAuthResult(call.user, account, call.tag, ok, error);
        else if (call.kind == Call::Check)
            Q_EMIT client.sigCheckAuthuserResult(call.user, ok, error);
        else if (call.kind == Call::SetUser)
            Q_EMIT client.sigSetSubUserResult(call.user, call.enable, ok, error);
        else if (call.kind == Call::Password)
            Q_EMIT client.sigUpdatesubuserResult(call.user, call.password, ok, error);
        else if (call.kind == Call::Import)
            Q_EMIT client.sigValidAuth(importedKey, secretOf(importedKey.section(u'|', 3)), ok,
                                       error);
    };
    if (how == fromThread)
        std::thread(emitResult).join();
    else
        emitResult();
}

} // namespace monkey
