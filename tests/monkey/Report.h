#pragma once

#include "tests/monkey/Failure.h"

namespace monkey {

/// What a process that runs episodes tells the one that started it, through memory that both share:
/// it stays readable however the process ends.
struct Report
{
    quint64 seed = 0;
    int dialogs = 0;
    qint64 actions = 0;
    qint64 opened = 0;
    qint64 grants = 0;
    qint64 cancels = 0;
    qint64 files = 0;
    char sort[32] = {};
    char text[1000] = {};

    void setFailure(const Failure& failure);
    Failure failure() const;
    void clearFailure();
};

/// Runs `work` in a process of its own and waits for it. When it crashes, exits with a sanitizer's
/// complaint, or makes no progress for a minute, the report's failure says so. A quiet one has no
/// standard error.
template <class Work>
void runApart(Report& report, bool quiet, Work work);

/// A report in memory that processes started from this one share; lives as long as the program.
Report& newSharedReport();

/// The part of runApart() that does not depend on the work.
int forkProcess(bool quiet);
[[noreturn]] void leaveProcess();
void awaitProcess(int process, Report& report);

template <class Work>
void runApart(Report& report, bool quiet, Work work)
{
    const int process = forkProcess(quiet);
    if (process == 0) {
        work(report);
        leaveProcess();
    }
    awaitProcess(process, report);
}

} // namespace monkey
