#include "authsetting/services/UserConfig.h"
#include "backend/client/Session.h"
#include "tests/backend/ClientSpy.h"
#include "utils/ExchangeTimeZone.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>

#include <csignal>
#include <cstdio>
#include <sys/resource.h>

// Works on a store from a process of its own, for tests that kill it, starve it or watch it:
//   store_helper grant <store> <user> <grantee> <burst size>   grants burst after burst
//   store_helper starved <store> <user> <grantee> <bytes>      one burst, with so little room left
//   store_helper watch <store> <user>                          says when something changed
// Each line on standard output is one thing that has happened.

namespace {

using backend::Session;
using backend::StoreOptions;

StoreOptions optionsFor(const QString& place, const QString& folder)
{
    StoreOptions options;
    options.location = backend::StoreLocation::parse(place);
    options.dataFolder = folder;
    options.clock = [] {
        return QDateTime(QDate(2024, 3, 15), QTime(10, 0), utils::exchangeTimeZone());
    };
    options.cheapCryptographyForTests = true;
    return options;
}

void say(const QString& line)
{
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

// All accounts that are free now, at most `count`.
int sendBurst(Session& session, const QString& grantee, int count)
{
    GW::CAuthLimit limit;
    const QDate today(2024, 3, 15);
    limit.startTime =
        static_cast<qint32>(today.startOfDay(utils::exchangeTimeZone()).toSecsSinceEpoch());
    limit.endTime = limit.startTime + 7 * 86400;
    int sent = 0;
    for (const auto& account : session.userConfig()->accounts) {
        const QString key = account->key();
        if (sent == count || account->authType != mbservice::AUTH_TYPE_NOT_GRANTED ||
            session.userConfig()->isSubAccount(key) || session.userConfig()->hasSubAccount(key))
            continue;
        session.authClient()->addAuth(grantee, *account, limit, 1, true);
        ++sent;
    }
    return sent;
}

void grantForever(Session& session, ClientSpy& spy, const QString& grantee, int burst)
{
    qsizetype answered = 0;
    while (true) {
        const int sent = sendBurst(session, grantee, burst);
        if (sent == 0) {
            say(QStringLiteral("no account left"));
            return;
        }
        const qsizetype expected = spy.references.size() + sent;
        while (spy.references.size() < expected)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        for (; answered < spy.references.size(); ++answered)
            say(spy.references[answered]);
    }
}

void grantStarved(Session& session, ClientSpy& spy, const QString& path, const QString& grantee,
                  int room)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const auto limit = static_cast<rlim_t>(QFileInfo(path).size() + room);
    const rlimit limits = {limit, limit};
    ::setrlimit(RLIMIT_FSIZE, &limits);
    const int sent = sendBurst(session, grantee, 1'000'000);
    while (spy.references.size() < sent)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::processEvents();
    say(QString::number(sent));
    for (const QString& line : std::as_const(spy.lines))
        say(line);
    int granted = 0;
    for (const auto& account : session.userConfig()->accounts)
        granted += account->authType == mbservice::AUTH_TYPE_GRANTED_TO_OTHER ? 1 : 0;
    say(QStringLiteral("granted in memory: %1").arg(granted));
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 4)
        return 2;
    const QString& mode = arguments[1];
    const QString& user = arguments[3];
    const QTemporaryDir folder;
    backend::SignInResult result = Session::signIn(optionsFor(arguments[2], folder.path()), user,
                                                   QStringLiteral("pw-") + user);
    if (!result.session) {
        say(result.error);
        return 1;
    }
    ClientSpy spy(result.session->authClient());
    say(QStringLiteral("ready"));
    if (mode == QStringLiteral("grant"))
        grantForever(*result.session, spy, arguments.value(4), arguments.value(5).toInt());
    else if (mode == QStringLiteral("starved"))
        grantStarved(*result.session, spy, arguments[2], arguments.value(4),
                     arguments.value(5).toInt());
    else {
        spy.onLine = [&] {
            say(QStringLiteral("%1 accounts").arg(result.session->userConfig()->accounts.size()));
        };
        return QCoreApplication::exec();
    }
    return 0;
}
