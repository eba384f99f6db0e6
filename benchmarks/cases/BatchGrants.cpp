#include "authsetting/shell/AuthSettingIds.h"
#include "benchmarks/cases/Cases.h"
#include "benchmarks/support/BareSqlite.h"
#include "benchmarks/support/BenchServices.h"
#include "benchmarks/support/FilledStore.h"
#include "benchmarks/support/Painting.h"
#include "benchmarks/support/StallMeter.h"
#include "benchmarks/support/Statistics.h"
#include "benchmarks/support/StoreDialog.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/tips/MessageTip.h"
#include "kit/widgets/ComboBox.h"
#include "utils/Clock.h"

#include <QAction>

#include <algorithm>
#include <climits>

namespace bench {

namespace {

constexpr int batchTab = 1;
constexpr int tickColumn = 0;

void setGrantee(const DialogPage& page, const QString& grantee)
{
    page.tabPage()->findChild<KZ::CComboBox*>()->setEditText(grantee);
}

struct Grant
{
    double milliseconds = 0;
    double stall = 0;
};

Grant grantOnce(int accounts)
{
    StoreDialog dialog(accounts, GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE, INT_MAX,
                       QString(), batchTab);
    dialog.tickAll(tickColumn);
    setGrantee(dialog.page(), granteeName());
    StallMeter meter;
    Grant grant;
    grant.milliseconds = dialog.grantMilliseconds(QStringLiteral("服务器授权"), accounts);
    grant.stall = meter.longestMilliseconds();
    return grant;
}

QString milliseconds(double ours, double other)
{
    return QStringLiteral("%1 ms against %2 ms").arg(ours, 0, 'f', 1).arg(other, 0, 'f', 1);
}

} // namespace

void measureBatchGrants(const Scale& scale, Results* results)
{
    std::vector<double> stalls;
    const Comparison grants = alternate(
        scale.rounds,
        [&] {
            const Grant grant = grantOnce(scale.accounts);
            stalls.push_back(grant.stall);
            return grant.milliseconds;
        },
        [&] { return bareTransactionMilliseconds(scale.accounts); });
    results->add({QStringLiteral("batch_grant_10k_vs_sqlite"), grants.ratio(), QString(), 6, 2,
                  milliseconds(grants.ours, grants.other)});
    results->add({QStringLiteral("batch_grant_10k_stall_ms"), median(stalls), QStringLiteral("ms"),
                  200, 50, QStringLiteral("longest stall of the event loop")});

    const Comparison growth = alternate(
        scale.rounds, [&] { return grantOnce(scale.accounts).milliseconds; },
        [&] { return grantOnce(scale.accounts / 10).milliseconds; });
    results->add({QStringLiteral("batch_grant_10k_over_1k"), growth.ratio(), QString(), 11, 10,
                  milliseconds(growth.ours, growth.other)});
}

void measureRefusedGrants(const Scale& scale, Results* results)
{
    std::vector<double> stalls;
    for (int round = 0; round < scale.rounds; ++round) {
        // The grantor himself is no possible grantee, so the store refuses each with its reason.
        StoreDialog dialog(scale.accounts, GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE,
                           INT_MAX, QString(), batchTab);
        dialog.tickAll(tickColumn);
        setGrantee(dialog.page(), grantorName());
        {
            StallMeter meter;
            dialog.grantMilliseconds(QStringLiteral("服务器授权"), scale.accounts);
            stalls.push_back(meter.longestMilliseconds());
        }
        qsizetype readable = 0;
        const auto tips = KZ::CMessageTip::visibleTips();
        for (const KZ::CMessageTip* tip : tips)
            readable += tip->texts().size();
        if (readable != scale.accounts)
            qFatal("%lld reasons are readable, not one for each account",
                   static_cast<long long>(readable));
        KZ::CMessageTip::closeAll();
    }
    results->add({QStringLiteral("all_fail_10k_stall_ms"), median(stalls), QStringLiteral("ms"),
                  200, 50, QStringLiteral("every reason readable afterwards")});
}

} // namespace bench
