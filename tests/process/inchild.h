#ifndef TESTS_PROCESS_INCHILD_H
#define TESTS_PROCESS_INCHILD_H

#include <sys/wait.h>
#include <unistd.h>

/// Runs the function in a forked process, whose limits, signals and descriptors it may change, and gives what
/// it returned, 0 to 100; the negative number of the signal that ended it; -1000 when none could be forked.
template <typename Function>
int InChild(Function function)
{
    const pid_t child = fork();
    if (child == 0) {
        _exit(function());
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) {
        return -1000;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

#endif
