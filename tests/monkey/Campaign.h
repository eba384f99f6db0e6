#pragma once

#include "tests/monkey/Action.h"
#include "tests/monkey/Options.h"
#include "tests/monkey/Report.h"

#include <QElapsedTimer>
#include <QMap>
#include <QTemporaryDir>

namespace monkey {

class Stage;

/// Runs episodes one after the other, each dialog with a seed of its own, in a process apart, and
/// tells what came of it.
class Campaign
{
public:
    explicit Campaign(const Options& options);

    /// Whether nothing failed.
    bool run();

private:
    struct Found
    {
        int times = 0;
        quint64 seed = 0;
        qint64 actions = 0;
        QString text;
    };

    bool replayScript();
    bool runKnownSeeds();
    bool runFreshSeeds();
    /// `seconds` bounds the time since the start; 0 does not.
    void runSeed(Stage& stage, quint64 seed, int actions, int seconds, Report& report);
    Failure replay(const Script& script, bool quiet);
    bool isOver() const;
    /// Prints the failure with its seed and a shorter script.
    void tell(const Failure& failure, quint64 seed);
    void tellFound() const;
    QString logPath() const { return m_folder.filePath(QStringLiteral("actions")); }

    const Options m_options;
    QTemporaryDir m_folder;
    QElapsedTimer m_time;
    Report& m_report;
    QMap<QString, Found> m_found;
};

} // namespace monkey
