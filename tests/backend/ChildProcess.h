#pragma once

#include <sys/wait.h>
#include <unistd.h>

/// Runs `body` in a forked child, so that limits and rights that it gives up end with it. Its
/// result as the child's exit code, or -1 when the child died otherwise.
template <class Body>
int inChildProcess(Body body)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(body());
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}
