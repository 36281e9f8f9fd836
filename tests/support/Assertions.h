// Tells whether an act fails an assertion, by trying it in a copy of the program.
#pragma once

#include <csignal>
#include <cstdlib>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qm::test {

// The copy has this thread only. An act that does not end is none that fails an assertion.
template <typename Act>
bool failsAnAssertion(const Act& act) {
    constexpr unsigned kLongest = 20;  // seconds
    const pid_t copy = fork();
    if (copy == 0) {
        std::signal(SIGABRT, SIG_DFL);
        constexpr rlimit kNoCore{};
        setrlimit(RLIMIT_CORE, &kNoCore);
        close(STDERR_FILENO);
        alarm(kLongest);
        act();
        _exit(EXIT_SUCCESS);
    }
    int status = 0;
    waitpid(copy, &status, 0);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
}

}  // namespace qm::test
