#include "tests/monkey/Report.h"

#include <QString>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace monkey {

namespace {

template <std::size_t size>
void copyText(char (&to)[size], const QString& text)
{
    const QByteArray bytes = text.toUtf8().left(static_cast<int>(size) - 1);
    std::memcpy(to, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    to[bytes.size()] = '\0';
}

} // namespace

void Report::setFailure(const Failure& failure)
{
    copyText(text, failure.text);
    copyText(sort, failure.sort);
}

Failure Report::failure() const
{
    return {QString::fromUtf8(sort), QString::fromUtf8(text)};
}

void Report::clearFailure()
{
    setFailure({});
}

Report& newSharedReport()
{
    void* memory =
        mmap(nullptr, sizeof(Report), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        std::fputs("no memory to share\n", stderr);
        std::exit(EXIT_FAILURE);
    }
    return *new (memory) Report;
}

int forkProcess(bool quiet)
{
    std::fflush(nullptr);
    const pid_t process = fork();
    if (process < 0) {
        std::perror("fork");
        std::exit(EXIT_FAILURE);
    }
    if (process == 0 && quiet)
        dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
    return process;
}

void leaveProcess()
{
    std::fflush(nullptr);
    // The ordinary way, so that a leak detector has its say.
    std::exit(EXIT_SUCCESS);
}

void awaitProcess(int process, Report& report)
{
    constexpr int pollMicroseconds = 10'000;
    constexpr int mostStandstill = 60'000'000 / pollMicroseconds;
    qint64 seen = -1;
    int standstill = 0;
    int status = 0;
    while (waitpid(process, &status, WNOHANG) == 0) {
        usleep(pollMicroseconds);
        standstill = seen == report.actions ? standstill + 1 : 0;
        seen = report.actions;
        if (standstill < mostStandstill)
            continue;
        kill(process, SIGKILL);
        waitpid(process, &status, 0);
        report.setFailure({QStringLiteral("hang"), QStringLiteral("no progress for a minute")});
        return;
    }
    if (!report.failure().isEmpty())
        return;
    if (WIFSIGNALED(status))
        report.setFailure(
            {QStringLiteral("crash"), QStringLiteral("signal %1").arg(WTERMSIG(status))});
    else if (WEXITSTATUS(status) != 0)
        report.setFailure(
            {QStringLiteral("crash"), QStringLiteral("exit status %1").arg(WEXITSTATUS(status))});
}

} // namespace monkey
