#include "authsetting/shell/AuthSettingIds.h"
#include "benchmarks/cases/Cases.h"
#include "benchmarks/support/BareTable.h"
#include "benchmarks/support/BenchServices.h"
#include "benchmarks/support/DialogPage.h"
#include "benchmarks/support/Painting.h"
#include "benchmarks/support/PlainTable.h"
#include "benchmarks/support/StallMeter.h"
#include "benchmarks/support/Statistics.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/events/EventIds.h"
#include "kit/table/OddEvenRowTable.h"

#include <QScrollBar>

#include <algorithm>
#include <climits>
#include <memory>
#include <utility>

namespace bench {

namespace {

struct Place
{
    int tabIndex;
    int tickColumn;
    int stateColumn;
    int buttonColumn;
};

constexpr Place overview{0, -1, 3, 7};
constexpr Place batch{1, 0, 4, 8};
// Sender of the batch tab's end date editor.
constexpr int endEditorId = 2;

QString sides(const Comparison& comparison)
{
    return QStringLiteral("%1 ms against %2 ms")
        .arg(comparison.ours, 0, 'f', 1)
        .arg(comparison.other, 0, 'f', 1);
}

std::unique_ptr<DialogPage> openPage(const Place& place)
{
    return std::make_unique<DialogPage>(GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE, INT_MAX,
                                        QString(), place.tabIndex);
}

TableRows rowsOf(const DialogPage& page, const Place& place)
{
    return readTable(page.table(), {place.tickColumn, place.stateColumn, place.buttonColumn,
                                    QStringLiteral("已授权"), QStringLiteral("取消授权")});
}

double reloadMilliseconds(DialogPage& page)
{
    settle();
    return millisecondsUntilPainted(page.viewport(), [&] { page.reload(); });
}

Comparison reloadAgainstBare(const Scale& scale, const Place& place)
{
    BenchServices services(scale.accounts, true);
    const auto page = openPage(place);
    const TableRows rows = rowsOf(*page, place);
    BareTable bare(rows);
    bare.resize(page->table()->size());
    bare.show();
    return alternate(
        scale.rounds, [&] { return reloadMilliseconds(*page); },
        [&] {
            QVector<TableRows::Row> fresh = rows.madeAnew();
            settle();
            return millisecondsUntilPainted(
                bare.viewport(), [&] { bare.bareModel().reload(std::exchange(fresh, {})); });
        });
}

Comparison reloadAgainstPlain(const Scale& scale)
{
    BenchServices services(scale.accounts, true);
    const auto page = openPage(overview);
    const TableRows rows = rowsOf(*page, overview);
    PlainTable plain(rows);
    plain.resize(page->table()->size());
    plain.show();
    return alternate(
        scale.rounds, [&] { return reloadMilliseconds(*page); },
        [&] {
            settle();
            return millisecondsUntilPainted(plain.viewport(), [&] { plain.reload(); });
        });
}

/// One page-down with its repaint, the mean of a walk through twenty pages, or as many as there
/// are.
double pageDownMilliseconds(QTableView* view)
{
    QScrollBar* bar = view->verticalScrollBar();
    const int pages = std::clamp(bar->maximum() / bar->pageStep(), 1, 20);
    bar->setValue(bar->minimum());
    settle();
    double total = 0;
    for (int step = 0; step < pages; ++step) {
        total += millisecondsUntilPainted(
            view->viewport(), [bar] { bar->triggerAction(QAbstractSlider::SliderPageStepAdd); });
    }
    return total / pages;
}

} // namespace

void measureOverview(const Scale& scale, Results* results)
{
    const Comparison overviewBare = reloadAgainstBare(scale, overview);
    results->add({QStringLiteral("overview_reload_10k_vs_bare"), overviewBare.ratio(), QString(),
                  2.5, 1.5, sides(overviewBare)});
}

void measureBatchTab(const Scale& scale, Results* results)
{
    const Comparison batchBare = reloadAgainstBare(scale, batch);
    results->add({QStringLiteral("batch_reload_10k_vs_bare"), batchBare.ratio(), QString(), 2.5,
                  1.5, sides(batchBare)});
}

void measurePlainTable(const Scale& scale, Results* results)
{
    const Comparison comparison = reloadAgainstPlain(scale);
    results->add({QStringLiteral("overview_reload_10k_vs_plain"), comparison.ratio(), QString(),
                  0.05, 0.01, sides(comparison)});
}

void measureGrowth(const Scale& scale, Results* results)
{
    BenchServices services(scale.accounts, true);
    const auto page = openPage(overview);
    const auto reloadWith = [&](int accounts) {
        services.setAccounts(accounts, true);
        // Once for the rows that the measured reload replaces.
        reloadMilliseconds(*page);
        return reloadMilliseconds(*page);
    };
    const Comparison growth = alternate(
        scale.rounds, [&] { return reloadWith(scale.accounts * 10); },
        [&] { return reloadWith(scale.accounts); });
    results->add({QStringLiteral("overview_reload_100k_over_10k"), growth.ratio(), QString(), 11,
                  10, sides(growth)});
}

void reloadRepeatedly(const QString& page, const Scale& scale)
{
    BenchServices services(scale.accounts, true);
    const auto shown = openPage(page == QLatin1String("batch") ? batch : overview);
    for (int round = 0; round < scale.rounds; ++round)
        reloadMilliseconds(*shown);
}

void measureScrolling(const Scale& scale, Results* results)
{
    BenchServices services(scale.accounts, true);
    const auto page = openPage(batch);
    BareTable bare(rowsOf(*page, batch));
    bare.resize(page->table()->size());
    bare.show();
    settle();
    const Comparison frame = alternate(
        scale.rounds, [&] { return pageDownMilliseconds(page->table()->view()); },
        [&] { return pageDownMilliseconds(&bare); });
    results->add({QStringLiteral("scroll_frame_10k_vs_bare"), frame.ratio(), QString(), 2, 1.2,
                  sides(frame)});
}

void measurePendingRefresh(const Scale& scale, Results* results)
{
    BenchServices services(scale.accounts, false);
    const auto page = openPage(batch);
    for (int row = 0; row < page->table()->rowCount(); ++row)
        page->table()->setItemChecked(row, batch.tickColumn, true);
    settle();
    const QList<KZ::CSoftCalendarLineEdit*> editors =
        page->tabPage()->findChildren<KZ::CSoftCalendarLineEdit*>();
    const auto end = std::find_if(editors.begin(), editors.end(),
                                  [](const auto* editor) { return editor->id() == endEditorId; });
    if (end == editors.end())
        qFatal("the page has no editor of the last day");
    std::vector<double> stalls;
    for (int round = 0; round < scale.rounds; ++round) {
        // Another day each time, or the rows would show it already.
        (*end)->setDate((*end)->date().addDays(1));
        StallMeter meter;
        page->deliver(KZ::EVENT_DATE_CHANGED, endEditorId, 0);
        settle();
        stalls.push_back(meter.longestMilliseconds());
    }
    results->add({QStringLiteral("pending_refresh_10k_ms"), median(stalls), QStringLiteral("ms"),
                  100, 16, QStringLiteral("longest stall of the event loop")});
}

} // namespace bench
