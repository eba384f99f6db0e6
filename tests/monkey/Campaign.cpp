#include "tests/monkey/Campaign.h"

#include "tests/monkey/Episode.h"
#include "tests/monkey/Shortener.h"
#include "tests/monkey/Stage.h"

#include <QFile>
#include <QTextStream>

#include <cstdio>
#include <random>

namespace monkey {

namespace {

void print(const QString& line)
{
    std::fputs(qPrintable(line + u'\n'), stdout);
    std::fflush(stdout);
}

} // namespace

Campaign::Campaign(const Options& options) : m_options(options), m_report(newSharedReport())
{
    m_time.start();
}

bool Campaign::run()
{
    if (!m_options.script.isEmpty())
        return replayScript();
    const bool isWell = runKnownSeeds() && runFreshSeeds();
    print(QStringLiteral("%1 actions in %2 dialogs, opened %3 times, %4 s; %5 grants, %6 "
                         "cancellations, %7 files")
              .arg(m_report.actions)
              .arg(m_report.dialogs)
              .arg(m_report.opened)
              .arg(static_cast<double>(m_time.elapsed()) / 1000)
              .arg(m_report.grants)
              .arg(m_report.cancels)
              .arg(m_report.files));
    tellFound();
    return isWell && m_found.isEmpty();
}

bool Campaign::isOver() const
{
    return (m_options.actions > 0 && m_report.actions >= m_options.actions) ||
           (m_options.seconds > 0 && m_time.elapsed() >= 1000LL * m_options.seconds);
}

void Campaign::runSeed(Stage& stage, quint64 seed, int actions, int seconds, Report& report)
{
    report.seed = seed;
    Episode episode(stage.dispatcher(), m_options.without, logPath());
    const qint64 before = report.actions;
    const auto isTimeOver = [this, &episode, &report, before, seconds] {
        report.actions = before + episode.actions();
        return seconds > 0 && m_time.elapsed() >= 1000LL * seconds;
    };
    const Failure failure = episode.generate(seed, actions, isTimeOver);
    report.actions = before + episode.actions();
    ++report.dialogs;
    report.opened += episode.opened();
    report.grants += episode.truth().grants();
    report.cancels += episode.truth().cancels();
    report.files += episode.truth().files();
    report.setFailure(failure);
}

bool Campaign::runKnownSeeds()
{
    QFile file(m_options.seeds);
    if (m_options.seeds.isEmpty() || !file.open(QIODevice::ReadOnly))
        return m_options.seeds.isEmpty();
    QTextStream lines(&file);
    while (!lines.atEnd()) {
        const QString line = lines.readLine();
        const QStringList words = line.split(u' ', Qt::SkipEmptyParts);
        if (words.size() < 2 || line.startsWith(u'#'))
            continue;
        const quint64 seed = words.at(0).toULongLong();
        const int actions = words.at(1).toInt();
        Report& report = newSharedReport();
        runApart(report, false, [this, seed, actions](Report& apart) {
            Stage stage(m_folder.path());
            runSeed(stage, seed, actions, 0, apart);
        });
        if (const Failure failure = report.failure(); !failure.isEmpty()) {
            tell(failure, seed);
            return false;
        }
    }
    return true;
}

bool Campaign::runFreshSeeds()
{
    std::random_device device;
    quint64 seed = m_options.hasSeed ? m_options.seed : device();
    print(QStringLiteral("first seed %1, %2 actions each").arg(seed).arg(m_options.perDialog));
    m_time.restart();
    while (!isOver()) {
        m_report.clearFailure();
        const qint64 before = m_report.actions;
        // A process for each, so that a seed alone gives what it gave among others.
        runApart(m_report, m_options.collects, [this, seed](Report& report) {
            Stage stage(m_folder.path());
            runSeed(stage, seed, m_options.perDialog, m_options.seconds, report);
        });
        ++seed;
        const Failure failure = m_report.failure();
        if (failure.isEmpty())
            continue;
        if (!m_options.collects) {
            tell(failure, m_report.seed);
            return false;
        }
        const bool isWarning = failure.sort == QStringLiteral("warning");
        Found& found = m_found[isWarning ? failure.text : failure.sort];
        if (++found.times == 1) {
            found.seed = m_report.seed;
            found.actions = m_report.actions - before;
            found.text = failure.text;
        }
    }
    return true;
}

Failure Campaign::replay(const Script& script, bool quiet)
{
    Report& report = newSharedReport();
    runApart(report, quiet, [this, &script](Report& apart) {
        Stage stage(m_folder.path());
        Episode episode(stage.dispatcher(), m_options.without,
                        m_folder.filePath(QStringLiteral("replayed")));
        apart.setFailure(episode.replay(script));
    });
    return report.failure();
}

bool Campaign::replayScript()
{
    const Script script = readScript(m_options.script);
    const Failure failure = replay(script, false);
    print(QStringLiteral("%1 actions: %2 %3")
              .arg(script.size())
              .arg(failure.isEmpty() ? QStringLiteral("well") : failure.sort, failure.text));
    return failure.isEmpty() && !script.isEmpty();
}

void Campaign::tell(const Failure& failure, quint64 seed)
{
    print(QStringLiteral("FAILED with seed %1: %2: %3").arg(seed).arg(failure.sort, failure.text));
    const Script script = readScript(logPath());
    const auto stillFails = [this, &failure](const Script& shorter) {
        return replay(shorter, true).sort == failure.sort;
    };
    if (!stillFails(script)) {
        print(QStringLiteral("its %1 actions alone do not fail").arg(script.size()));
        return;
    }
    const Script shorter = shortened(script, stillFails, m_options.tries);
    print(QStringLiteral("these %1 of its %2 actions do:").arg(shorter.size()).arg(script.size()));
    for (const Action& action : shorter)
        print(action.toLine());
    print(QStringLiteral("which gives: ") + replay(shorter, false).text);
}

void Campaign::tellFound() const
{
    for (auto found = m_found.cbegin(); found != m_found.cend(); ++found)
        print(QStringLiteral("%1 times %2, first with seed %3 after %4 actions: %5")
                  .arg(found->times)
                  .arg(found.key())
                  .arg(found->seed)
                  .arg(found->actions)
                  .arg(found->text));
}

} // namespace monkey
