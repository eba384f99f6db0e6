#include "authsetting/shell/AuthSettingIds.h"
#include "benchmarks/cases/Cases.h"
#include "benchmarks/support/BareTable.h"
#include "benchmarks/support/BenchServices.h"
#include "benchmarks/support/DialogPage.h"
#include "benchmarks/support/Painting.h"
#include "benchmarks/support/Statistics.h"
#include "kit/table/OddEvenRowTable.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

#include <climits>
#include <malloc.h>
#include <memory>
#include <unistd.h>

namespace bench {

namespace {

double residentBytes()
{
    malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the memory of the process cannot be read");
    const QList<QByteArray> fields = file.readAll().split(' ');
    return fields.at(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE));
}

std::unique_ptr<DialogPage> openOverview()
{
    return std::make_unique<DialogPage>(GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE, INT_MAX,
                                        QString(), 0);
}

double bytesOfPage(int accounts)
{
    BenchServices services(0, true);
    const auto page = openOverview();
    services.setAccounts(accounts, true);
    const double before = residentBytes();
    millisecondsUntilPainted(page->viewport(), [&] { page->reload(); });
    settle();
    return residentBytes() - before;
}

double bytesOfBareTable(int accounts)
{
    BenchServices services(accounts, true);
    const auto page = openOverview();
    const TableShape shape{-1, 3, 7, QStringLiteral("已授权"), QStringLiteral("取消授权")};
    const TableRows rows = readTable(page->table(), shape);
    // The window with its empty table belongs to neither side.
    TableRows none = rows;
    none.rows.clear();
    BareTable bare(none);
    bare.resize(page->table()->size());
    bare.show();
    settle();
    const double before = residentBytes();
    millisecondsUntilPainted(bare.viewport(), [&] { bare.bareModel().reload(rows.madeAnew()); });
    settle();
    return residentBytes() - before;
}

double measuredByChild(const QString& side, int accounts)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--memory-of"), side, QStringLiteral("--accounts"),
                 QString::number(accounts)});
    if (!child.waitForFinished(-1) || child.exitCode() != 0)
        qFatal("the process that measures memory failed");
    return child.readAllStandardOutput().trimmed().toDouble();
}

} // namespace

double addedBytes(const QString& side, int accounts)
{
    return side == QLatin1String("page") ? bytesOfPage(accounts) : bytesOfBareTable(accounts);
}

void measureMemory(const Scale& scale, Results* results)
{
    const Comparison memory = alternate(
        scale.rounds, [&] { return measuredByChild(QStringLiteral("page"), scale.accounts); },
        [&] { return measuredByChild(QStringLiteral("bare"), scale.accounts); });
    results->add({QStringLiteral("overview_rss_10k_vs_bare"), memory.ratio(), QString(), 2, 1.2,
                  QStringLiteral("%1 MB against %2 MB")
                      .arg(memory.ours / 1e6, 0, 'f', 1)
                      .arg(memory.other / 1e6, 0, 'f', 1)});
}

} // namespace bench
