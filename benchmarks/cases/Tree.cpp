#include "authsetting/shell/AuthSettingDialog.h"
#include "authsetting/shell/AuthSettingIds.h"
#include "authsetting/shell/NavigatorFiller.h"
#include "benchmarks/cases/Cases.h"
#include "benchmarks/support/BareTable.h"
#include "benchmarks/support/BareTree.h"
#include "benchmarks/support/BenchServices.h"
#include "benchmarks/support/DialogPage.h"
#include "benchmarks/support/Painting.h"
#include "benchmarks/support/Statistics.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QTabWidget>

#include <climits>
#include <memory>
#include <utility>

namespace bench {

namespace {

constexpr int growth = 10;

/// The overview with the tree that the module fills.
std::unique_ptr<DialogPage> openWithTree()
{
    auto page = std::make_unique<DialogPage>(GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE,
                                             INT_MAX, QString(), 0);
    page->dialog().setNavigatorFiller(GW::fillNavigator);
    page->dialog().load();
    return page;
}

QTreeWidget* treeOf(DialogPage& page)
{
    auto* tree = page.dialog().findChild<QTreeWidget*>();
    if (!tree || tree->topLevelItemCount() == 0)
        qFatal("the dialog has no tree");
    return tree;
}

double reloadTreeMilliseconds(DialogPage& page)
{
    settle();
    return millisecondsUntilPainted(treeOf(page)->viewport(), [&] { page.dialog().load(); });
}

/// A tree and a table of Qt's own with finished contents, side by side as in the dialog.
class BareDialog : public QDialog
{
public:
    BareDialog(const TreeItems& items, TableRows rows)
    {
        auto* layout = new QHBoxLayout(this);
        auto* tree = new BareTree(this);
        auto* tabs = new QTabWidget(this);
        tree->setFont(items.font);
        tree->reload(items);
        tabs->addTab(new BareTable(std::move(rows), tabs), QStringLiteral("账号总览"));
        layout->addWidget(tree, 1);
        layout->addWidget(tabs, 4);
        resize(1180, 680);
    }
};

double openOursMilliseconds()
{
    settle();
    QElapsedTimer timer;
    timer.start();
    GW::CAuthSettingDialog dialog;
    millisecondsUntilPainted(&dialog, [&dialog] {
        dialog.setNavigatorFiller(GW::fillNavigator);
        dialog.load();
        dialog.showPage(GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE);
        dialog.activeNode(GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE);
        dialog.show();
    });
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double openBareMilliseconds(const TreeItems& items, const TableRows& rows)
{
    const TreeItems freshItems = items.madeAnew();
    TableRows freshRows = rows;
    freshRows.rows = rows.madeAnew();
    settle();
    QElapsedTimer timer;
    timer.start();
    BareDialog dialog(freshItems, std::move(freshRows));
    millisecondsUntilPainted(&dialog, [&dialog] { dialog.show(); });
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

QString sides(const Comparison& comparison)
{
    return QStringLiteral("%1 ms against %2 ms")
        .arg(comparison.ours, 0, 'f', 1)
        .arg(comparison.other, 0, 'f', 1);
}

} // namespace

void measureTree(const Scale& scale, Results* results)
{
    BenchServices services(scale.accounts, true);
    const auto page = openWithTree();
    QTreeWidget* tree = treeOf(*page);
    const TreeItems items = readTree(tree);
    BareTree bare;
    bare.setFont(items.font);
    bare.resize(tree->size());
    bare.show();
    const Comparison reload = alternate(
        scale.rounds, [&] { return reloadTreeMilliseconds(*page); },
        [&] {
            const TreeItems fresh = items.madeAnew();
            settle();
            return millisecondsUntilPainted(bare.viewport(), [&] { bare.reload(fresh); });
        });
    results->add({QStringLiteral("tree_reload_10k_vs_bare"), reload.ratio(), QString(), 2, 1.2,
                  sides(reload)});
}

void measureLargeOpen(const Scale& scale, Results* results)
{
    BenchServices services(scale.accounts * growth, true);
    TreeItems items;
    TableRows rows;
    {
        const auto page = openWithTree();
        items = readTree(treeOf(*page));
        rows = readTable(page->table(),
                         {-1, 3, 7, QStringLiteral("已授权"), QStringLiteral("取消授权")});
    }
    const Comparison opening = alternate(scale.rounds, openOursMilliseconds,
                                         [&] { return openBareMilliseconds(items, rows); });
    results->add({QStringLiteral("dialog_open_100k_vs_bare"), opening.ratio(), QString(), 2, 1.2,
                  sides(opening)});
}

void reloadTreeRepeatedly(const Scale& scale)
{
    BenchServices services(scale.accounts, true);
    const auto page = openWithTree();
    for (int round = 0; round < scale.rounds; ++round)
        reloadTreeMilliseconds(*page);
}

} // namespace bench
