#include "authsetting/shell/AuthSettingDialog.h"
#include "authsetting/shell/AuthSettingIds.h"
#include "authsetting/shell/NavigatorFiller.h"
#include "benchmarks/cases/Cases.h"
#include "benchmarks/support/BareTable.h"
#include "benchmarks/support/BenchServices.h"
#include "benchmarks/support/DialogPage.h"
#include "benchmarks/support/Painting.h"
#include "benchmarks/support/Statistics.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QTabWidget>
#include <QTreeWidget>

#include <climits>

namespace bench {

namespace {

constexpr int accounts = 100;

/// From before the window is constructed until it has been painted.
template <class Window, class Show>
double openMilliseconds(Show show)
{
    QElapsedTimer timer;
    timer.start();
    Window window;
    millisecondsUntilPainted(&window, [&] { show(window); });
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

class PlainDialog : public QDialog
{
public:
    void build(const TableRows& rows)
    {
        auto* layout = new QHBoxLayout(this);
        auto* tree = new QTreeWidget(this);
        auto* tabs = new QTabWidget(this);
        tree->setHeaderHidden(true);
        auto* top = new QTreeWidgetItem(tree, {QStringLiteral("账号授权")});
        for (const TableRows::Row& row : rows.rows)
            new QTreeWidgetItem(top, {row.texts.at(2)});
        tree->expandAll();
        tabs->addTab(new BareTable(rows, tabs), QStringLiteral("账号总览"));
        layout->addWidget(tree, 1);
        layout->addWidget(tabs, 4);
        resize(1180, 680);
    }
};

} // namespace

void measureFirstOpen(const Scale& scale, Results* results)
{
    BenchServices services(accounts, true);
    TableRows rows;
    {
        DialogPage page(GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE, INT_MAX, QString(), 0);
        rows = readTable(page.table(),
                         {-1, 3, 7, QStringLiteral("已授权"), QStringLiteral("取消授权")});
    }
    const Comparison opening = alternate(
        scale.rounds,
        [] {
            return openMilliseconds<GW::CAuthSettingDialog>([](GW::CAuthSettingDialog& dialog) {
                dialog.setNavigatorFiller(GW::fillNavigator);
                dialog.load();
                dialog.showPage(GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE);
                dialog.show();
            });
        },
        [&rows] {
            return openMilliseconds<PlainDialog>([&rows](PlainDialog& dialog) {
                dialog.build(rows);
                dialog.show();
            });
        });
    results->add({QStringLiteral("first_open_vs_plain_dialog"), opening.ratio(), QString(), 2, 1.2,
                  QStringLiteral("%1 ms against %2 ms")
                      .arg(opening.ours, 0, 'f', 1)
                      .arg(opening.other, 0, 'f', 1)});
}

} // namespace bench
