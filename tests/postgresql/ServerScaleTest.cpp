#include "authsetting/services/AuthClient.h"
#include "backend/store/AuditEntry.h"
#include "tests/backend/ClientSpy.h"
#include "tests/postgresql/DesksFixture.h"
#include "tests/support/TestCase.h"

#include <QElapsedTimer>

#include <memory>
#include <vector>

using backend::Session;

namespace {

constexpr int clients = 50;
constexpr int accountsOfEach = 4;

// Seconds that the clients work; AUTHSETTING_SCALE_SECONDS=60 for the long run.
int workSeconds()
{
    bool isSet = false;
    const int seconds = qEnvironmentVariableIntValue("AUTHSETTING_SCALE_SECONDS", &isSet);
    return isSet ? seconds : 8;
}

QString userName(int client)
{
    return QStringLiteral("user%1").arg(client, 2, 10, QLatin1Char('0'));
}

// One client that grants and cancels its accounts in turn, the next step as soon as the last one is
// answered.
class BusyClient
{
public:
    BusyClient(int number, std::unique_ptr<Session> session)
        : m_number(number), m_session(std::move(session)), m_spy(m_session->authClient())
    {
    }

    bool isIdle() const { return m_answered() == m_asked; }
    void step()
    {
        const mbservice::CAccountInfo account =
            DesksFixture::account(m_number * accountsOfEach + m_step / 2 % accountsOfEach);
        // To another neighbour each time, so that everybody waits for everybody.
        const QString grantee = userName((m_number + 1 + m_step / 2 % 7) % clients);
        GW::CAuthLimit limit = DesksFixture::week();
        if (m_step % 2 == 0)
            m_session->authClient()->addAuth(grantee, account, limit, m_step, true);
        else
            m_session->authClient()->delAuth(grantee, account, m_step);
        ++m_step;
        ++m_asked;
    }
    /// Whether the last grant is still to be cancelled.
    bool isInMidPair() const { return m_step % 2 == 1; }
    int pairs() const { return m_step / 2; }

    QStringList failures() const
    {
        QStringList failures;
        for (const QString& line : m_spy.lines) {
            if (line != QStringLiteral("changed") && !line.endsWith(QStringLiteral(" ok")))
                failures.append(line);
        }
        return failures;
    }
    const QStringList& references() const { return m_spy.references; }

private:
    qsizetype m_answered() const
    {
        return m_spy.lines.size() - m_spy.lines.count(QStringLiteral("changed"));
    }

    int m_number;
    std::unique_ptr<Session> m_session;
    ClientSpy m_spy;
    int m_step = 0;
    qsizetype m_asked = 0;
};

bool fill(DesksFixture& fixture)
{
    if (!fixture.fill(0))
        return false;
    const auto store = fixture.admin();
    for (int client = 0; store && client < clients; ++client) {
        store->addUser(userName(client), QStringLiteral("pw-") + userName(client));
        for (int account = 0; account < accountsOfEach; ++account)
            store->addAccount(userName(client),
                              DesksFixture::account(client * accountsOfEach + account));
    }
    return store && store->commit();
}

} // namespace

class ServerScaleTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void fiftyClientsGrantAndCancelAtOnce()
    {
        DesksFixture fixture;
        QVERIFY(fill(fixture));
        std::vector<std::unique_ptr<BusyClient>> busy;
        for (int client = 0; client < clients; ++client) {
            auto session = fixture.signIn(userName(client));
            QVERIFY(session);
            busy.push_back(std::make_unique<BusyClient>(client, std::move(session)));
        }

        QElapsedTimer timer;
        timer.start();
        const qint64 end = workSeconds() * 1000LL;
        bool allIdle = false;
        while (!allIdle && timer.elapsed() < end + 30'000) {
            allIdle = true;
            for (const auto& client : busy) {
                if (client->isIdle() && (timer.elapsed() < end || client->isInMidPair()))
                    client->step();
                allIdle = allIdle && client->isIdle();
            }
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        }
        QVERIFY(allIdle);

        QStringList references;
        int pairs = 0;
        for (const auto& client : busy) {
            QCOMPARE(client->failures(), QStringList());
            QVERIFY(client->pairs() > 0);
            pairs += client->pairs();
            references += client->references();
        }
        references.removeAll(QString());
        references.sort();
        qInfo("%d grants made and cancelled in %lld ms", pairs, timer.elapsed());
        compare(fixture, references, pairs);
    }

private:
    static void compare(const DesksFixture& fixture, const QStringList& references, int pairs)
    {
        QCOMPARE(references.size(), pairs);
        // Every grant that a client was told of, and no other; all of them cancelled.
        QCOMPARE(fixture.query(QStringLiteral("SELECT replace(reference::text, '-', '') FROM "
                                              "authsetting.grants WHERE state = 3 ORDER BY 1")),
                 references);
        QCOMPARE(fixture.query(QStringLiteral("SELECT count(*) FROM authsetting.grants")),
                 QStringList(QString::number(pairs)));
        // Each of them granted once and cancelled once, by its owner, in turn.
        QCOMPARE(fixture.query(QStringLiteral(
                     "SELECT action, error, count(*) FROM authsetting.audit_trail "
                     "WHERE action <> 'sign_in' GROUP BY action, error ORDER BY action")),
                 QStringList({QStringLiteral("cancel||%1").arg(pairs),
                              QStringLiteral("grant||%1").arg(pairs)}));
        QCOMPARE(fixture.query(QStringLiteral(
                     "SELECT count(*) FROM (SELECT action, lag(action) OVER "
                     "(PARTITION BY account_id ORDER BY serial) AS before, "
                     "other_user_id, lag(other_user_id) OVER (PARTITION BY account_id "
                     "ORDER BY serial) AS other_before FROM authsetting.audit_trail "
                     "WHERE account_id IS NOT NULL) t WHERE action = before "
                     "OR (action = 'cancel' AND other_user_id <> other_before)")),
                 QStringList(QStringLiteral("0")));
        QCOMPARE(fixture.contradictions(), QStringList());
    }
};

int main(int argc, char** argv)
{
    return runTest<ServerScaleTest>(argc, argv);
}

#include "ServerScaleTest.moc"
