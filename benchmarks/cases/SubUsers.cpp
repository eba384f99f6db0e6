#include "authsetting/shell/AuthSettingIds.h"
#include "benchmarks/cases/Cases.h"
#include "benchmarks/support/BareTable.h"
#include "benchmarks/support/BenchServices.h"
#include "benchmarks/support/DialogPage.h"
#include "benchmarks/support/FilledStore.h"
#include "benchmarks/support/Painting.h"
#include "benchmarks/support/Statistics.h"
#include "benchmarks/support/StoreDialog.h"
#include "kit/events/EventIds.h"
#include "kit/table/OddEvenRowTable.h"

#include <algorithm>
#include <climits>
#include <utility>

namespace bench {

namespace {

constexpr int tickColumn = 0;
// The tick of row n is known to the sub-user's page as n + 100.
constexpr int firstTickId = 100;

double grantToSubUser(int accounts)
{
    StoreDialog dialog(accounts, GW::ID_FUTURE_AUTHSETTING_PAGE_RESTRICTEDUSERS,
                       GW::ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_RESTRICTEDUSER, granteeName(), 0);
    KZ::COddEvenRowTable* table = dialog.page().table();
    for (int row = 0; row < accounts; ++row) {
        table->setItemChecked(row, tickColumn, true);
        dialog.page().deliver(KZ::EVENT_CHECK_TOGGLED, row + firstTickId, 1);
    }
    settle();
    return dialog.grantMilliseconds(QStringLiteral("服务器授权"), accounts);
}

QString sides(const Comparison& comparison)
{
    return QStringLiteral("%1 ms against %2 ms")
        .arg(comparison.ours, 0, 'f', 1)
        .arg(comparison.other, 0, 'f', 1);
}

} // namespace

void measureSubUsers(const Scale& scale, Results* results)
{
    const Comparison growth = alternate(
        scale.rounds, [&] { return grantToSubUser(scale.accounts / 2); },
        [&] { return grantToSubUser(scale.accounts / 10); });
    results->add({QStringLiteral("sub_user_grant_5k_over_1k"), growth.ratio(), QString(), 7, 5,
                  sides(growth)});

    const int subUsers = std::max(10, scale.accounts / 10);
    BenchServices services(scale.accounts, true, subUsers);
    DialogPage page(GW::ID_FUTURE_AUTHSETTING_PAGE_RESTRICTEDUSERS, INT_MAX, QString(), 0);
    const TableRows rows =
        readTable(page.table(), {-1, 2, 3, QStringLiteral("已启用"), QStringLiteral("禁用")});
    BareTable bare(rows);
    bare.resize(page.table()->size());
    bare.show();
    settle();
    const Comparison reload = alternate(
        scale.rounds,
        [&] {
            settle();
            return millisecondsUntilPainted(page.viewport(), [&] { page.reload(); });
        },
        [&] {
            QVector<TableRows::Row> fresh = rows.madeAnew();
            settle();
            return millisecondsUntilPainted(
                bare.viewport(), [&] { bare.bareModel().reload(std::exchange(fresh, {})); });
        });
    results->add({QStringLiteral("sub_users_1k_reload_vs_bare"), reload.ratio(), QString(), 2.5,
                  1.5, sides(reload)});
}

} // namespace bench
