#include "authsetting/services/AuthClient.h"
#include "authsetting/shell/AuthSettingIds.h"
#include "benchmarks/cases/Cases.h"
#include "benchmarks/support/BareTable.h"
#include "benchmarks/support/FilledStore.h"
#include "benchmarks/support/Painting.h"
#include "benchmarks/support/ServerConnection.h"
#include "benchmarks/support/ServerStore.h"
#include "benchmarks/support/Statistics.h"
#include "benchmarks/support/StoreDialog.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/ComboBox.h"

#include <QElapsedTimer>
#include <QUuid>

#include <climits>

namespace bench {

namespace {

constexpr int batchTab = 1;
constexpr int tickColumn = 0;
// Of the table of received accounts.
constexpr int stateColumn = 3;
// What a grantee's table holds before the grant that is measured.
constexpr int receivedAccounts = 100;

QString sides(const Comparison& comparison)
{
    return QStringLiteral("%1 ms against %2 ms")
        .arg(comparison.ours, 0, 'f', 1)
        .arg(comparison.other, 0, 'f', 1);
}

double grantOnServer(int accounts)
{
    const ServerStore store(accounts);
    StoreDialog dialog(store.client(), grantorName(),
                       GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE, INT_MAX, QString(),
                       batchTab);
    dialog.tickAll(tickColumn);
    dialog.page().tabPage()->findChild<KZ::CComboBox*>()->setEditText(granteeName());
    const double milliseconds = dialog.grantMilliseconds(QStringLiteral("服务器授权"), accounts);
    const QByteArray granted = ServerConnection(store.administrator())
                                   .run("SELECT count(*) FROM authsetting.grants WHERE state = 2")
                                   .first();
    if (granted.toInt() != accounts)
        qFatal("%s of %d accounts were granted", granted.constData(), accounts);
    return milliseconds;
}

// The same rows in the same tables, in one transaction.
double copyRows(int accounts)
{
    const ServerStore store(accounts);
    ServerConnection connection(store.administrator());
    const auto userId = [&connection](const QString& name) {
        return connection
            .run("SELECT id FROM authsetting.users WHERE name = '" + name.toLatin1() + '\'')
            .constFirst();
    };
    const QByteArray grantor = userId(grantorName());
    const QByteArray grantee = userId(granteeName());
    const QList<QByteArray> ids = connection.run("SELECT id FROM authsetting.accounts");
    const QByteArray days = "2030-03-01\t2030-03-08\t";
    const QByteArray time = "2030-03-01 04:00:00+00";
    QElapsedTimer timer;
    timer.start();
    QByteArray grants;
    QByteArray entries;
    for (const QByteArray& id : ids) {
        grants += QUuid::createUuid().toByteArray(QUuid::WithoutBraces) + '\t' + grantor + '\t' +
                  grantee + '\t' + id + '\t' + days + "\\N\t1\t2\t" + time + "\t2\t2\n";
        entries += time + '\t' + grantor + '\t' + grantor + '\t' + grantee + "\tgrant\t" + id +
                   '\t' + days + "\\N\t\n";
    }
    connection.run("BEGIN");
    connection.copy("authsetting.grants (reference, grantor_id, grantee_id, account_id, first_day, "
                    "last_day, ratio, source, state, created_at, grantor_version, grantee_version)",
                    grants);
    connection.copy("authsetting.audit_trail (happened_at, actor_id, user_id, other_user_id, "
                    "action, account_id, first_day, last_day, ratio, error)",
                    entries);
    connection.run("COMMIT");
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

// A store with a grantee who has received something, and a grantor about to commit one more grant.
class TwoDesks
{
public:
    TwoDesks() : m_store(receivedAccounts + 2), m_grantor(m_store.login(grantorName()))
    {
        QByteArray all = request(0);
        for (int number = 1; number < receivedAccounts; ++number)
            all += ',' + request(number);
        send(all);
        const QByteArray granted = ServerConnection(m_store.administrator())
                                       .run("SELECT count(*) FROM authsetting.grants")
                                       .first();
        if (granted.toInt() != receivedAccounts)
            qFatal("%s grants were made", granted.constData());
    }

    const ServerStore& store() const { return m_store; }
    /// The first grant, after which the connections at both desks have done everything once.
    void warmUp()
    {
        send(request(receivedAccounts));
        settle();
    }
    void grantUncommitted()
    {
        m_grantor.run("BEGIN");
        send(request(receivedAccounts + 1));
    }
    void commit() { m_grantor.run("COMMIT"); }

private:
    static QByteArray request(int number)
    {
        return R"({"kind":"add","user":")" + granteeName().toLatin1() +
               R"(","platform_id":1,"broker_id":"8000","account_sub_type":0,"account_number":")" +
               QByteArray::number(600000000 + number) +
               R"(","first_day":"2037-01-01","last_day":"2037-12-31","on_server":true})";
    }
    void send(const QByteArray& requests)
    {
        m_grantor.run("SELECT authsetting.run_requests(gen_random_uuid(), '[" + requests + "]')");
    }

    ServerStore m_store;
    ServerConnection m_grantor;
};

// From the commit at one desk to the repainted table at the other; `told` gets the part until the
// other desk's client has read the change.
double seenAtTheOtherDesk(TableRows* rows, std::vector<double>* told)
{
    TwoDesks desks;
    StoreDialog dialog(desks.store().client(), granteeName(),
                       GW::ID_FUTURE_AUTHSETTING_PAGE_IMPORT_AUTHORIZATION, INT_MAX, QString(), 0);
    if (dialog.page().table()->rowCount() != receivedAccounts)
        qFatal("the other desk shows %d accounts", dialog.page().table()->rowCount());
    desks.warmUp();
    while (dialog.page().table()->rowCount() == receivedAccounts)
        settle();
    settle();
    desks.grantUncommitted();
    settle();
    desks.commit();
    QElapsedTimer timer;
    timer.start();
    const auto noting = QObject::connect(
        dialog.session().authClient(), &GW::CAuthClient::sigUiUpdateAuth, dialog.page().viewport(),
        [&] { told->push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6); });
    const double milliseconds = millisecondsUntilPainted(dialog.page().viewport(), [] {});
    QObject::disconnect(noting);
    if (dialog.page().table()->rowCount() != receivedAccounts + 2)
        qFatal("the other desk was repainted without the grant");
    *rows = readTable(dialog.page().table(), {-1, stateColumn, -1, QStringLiteral("-"), QString()});
    return milliseconds;
}

// A notice, a query of the changed rows and a repaint, one after the other.
double bareWay(const TableRows& rows)
{
    TwoDesks desks;
    ServerConnection listener(desks.store().administrator());
    const auto granteeRow = [&listener] {
        return listener
            .run("SELECT id, data_version FROM authsetting.users WHERE name = '" +
                 granteeName().toLatin1() + '\'')
            .constFirst()
            .split('\t');
    };
    const auto changedSince = [&listener](const QList<QByteArray>& known) {
        return listener
            .run("SELECT a.*, g.* FROM authsetting.grants g "
                 "JOIN authsetting.accounts a ON a.id = g.account_id WHERE g.grantee_id = " +
                 known[0] + " AND g.grantee_version > " + known[1])
            .size();
    };
    BareTable table(rows);
    table.resize(1000, 700);
    table.show();
    QVector<TableRows::Row> fresh = rows.madeAnew();
    listener.run("LISTEN authsetting_changed");
    const QList<QByteArray> before = granteeRow();
    desks.warmUp();
    listener.awaitNotice();
    if (changedSince(before) != 1)
        qFatal("the first grant is not there");
    const QList<QByteArray> known = granteeRow();
    desks.grantUncommitted();
    settle();
    desks.commit();
    QElapsedTimer timer;
    timer.start();
    listener.awaitNotice();
    if (changedSince(known) != 1)
        qFatal("the grant is not there");
    const double told = static_cast<double>(timer.nsecsElapsed()) / 1e6;

    return told + millisecondsUntilPainted(table.viewport(),
                                           [&] { table.bareModel().reload(std::move(fresh)); });
}

} // namespace

void measureServerGrants(const Scale& scale, Results* results)
{
    const Comparison grants = alternate(
        scale.rounds, [&] { return grantOnServer(scale.accounts); },
        [&] { return copyRows(scale.accounts); });
    results->add({QStringLiteral("batch_grant_10k_pg_vs_copy"), grants.ratio(), QString(), 6, 2,
                  sides(grants)});
}

void measureDeskToDesk(const Scale& scale, Results* results)
{
    TableRows rows;
    std::vector<double> told;
    const Comparison way = alternate(
        scale.rounds, [&] { return seenAtTheOtherDesk(&rows, &told); },
        [&] { return bareWay(rows); });
    results->add({QStringLiteral("desk_to_desk_vs_notify"), way.ratio(), QString(), 2, 2,
                  QStringLiteral("%1, %2 ms of it until it was read")
                      .arg(sides(way))
                      .arg(median(told), 0, 'f', 1)});
}

} // namespace bench
