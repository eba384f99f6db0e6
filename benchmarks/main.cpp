#include "benchmarks/cases/Cases.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

#include <cstdio>

namespace {

using Measurement = void (*)(const bench::Scale&, bench::Results*);

struct Case
{
    const char* name;
    Measurement measure;
};

constexpr Case cases[] = {
    {"overview", bench::measureOverview},
    {"batch", bench::measureBatchTab},
    {"plain", bench::measurePlainTable},
    {"growth", bench::measureGrowth},
    {"memory", bench::measureMemory},
    {"scroll", bench::measureScrolling},
    {"pending", bench::measurePendingRefresh},
    {"grant", bench::measureBatchGrants},
    {"refused", bench::measureRefusedGrants},
    {"export", bench::measureFileExport},
    {"open", bench::measureFirstOpen},
    {"subusers", bench::measureSubUsers},
    {"tree", bench::measureTree},
    {"largeopen", bench::measureLargeOpen},
    {"server", bench::measureServerGrants},
    {"desks", bench::measureDeskToDesk},
};

QtMessageHandler earlierHandler = nullptr;

// The offscreen platform speaks up about every window that it cannot raise or size.
void dropPlatformNoise(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (!text.startsWith(QLatin1String("This plugin does not support ")))
        earlierHandler(type, context, text);
}

int measureAll(const bench::Scale& scale, const QStringList& wanted, const QString& path)
{
    bench::Results results;
    for (const Case& each : cases) {
        if (wanted.isEmpty() || wanted.contains(QString::fromLatin1(each.name)))
            each.measure(scale, &results);
    }
    QDir().mkpath(QFileInfo(path).path());
    if (!results.write(path)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
        return 2;
    }
    std::printf("%s\n", results.allReached() ? "All bars reached." : "Some bars were missed.");
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    earlierHandler = qInstallMessageHandler(dropPlatformNoise);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption accounts(QStringLiteral("accounts"),
                                      QStringLiteral("Accounts in place of 10000."),
                                      QStringLiteral("count"), QStringLiteral("10000"));
    const QCommandLineOption rounds(QStringLiteral("rounds"),
                                    QStringLiteral("Rounds behind each median."),
                                    QStringLiteral("count"), QStringLiteral("9"));
    const QCommandLineOption output(QStringLiteral("output"), QStringLiteral("File of results."),
                                    QStringLiteral("file"),
                                    QStringLiteral("build/bench/results.json"));
    QCommandLineOption memoryOf(QStringLiteral("memory-of"), QString(), QStringLiteral("side"));
    memoryOf.setFlags(QCommandLineOption::HiddenFromHelp);
    const QCommandLineOption reloadOf(
        QStringLiteral("reload-of"),
        QStringLiteral(
            "Only reload this page, overview or batch, or the tree, for a profiler to look at."),
        QStringLiteral("page"));
    parser.addOptions({accounts, rounds, output, memoryOf, reloadOf});
    parser.addPositionalArgument(
        QStringLiteral("case"),
        QStringLiteral("Measure only these: overview, batch, plain, growth, memory, "
                       "scroll, pending, grant, refused, export, open, "
                       "subusers, tree, largeopen, server, desks."));
    parser.process(application);

    bench::Scale scale;
    scale.accounts = parser.value(accounts).toInt();
    scale.rounds = parser.value(rounds).toInt();
    if (scale.accounts < 100 || scale.rounds < 1) {
        std::fprintf(stderr, "at least 100 accounts and one round\n");
        return 2;
    }
    if (parser.isSet(memoryOf)) {
        std::printf("%.0f\n", bench::addedBytes(parser.value(memoryOf), scale.accounts));
        return 0;
    }
    if (parser.isSet(reloadOf)) {
        if (parser.value(reloadOf) == QLatin1String("tree"))
            bench::reloadTreeRepeatedly(scale);
        else
            bench::reloadRepeatedly(parser.value(reloadOf), scale);
        return 0;
    }
    return measureAll(scale, parser.positionalArguments(), parser.value(output));
}
