// What a user without special rights gets, whoever runs the tests.
#pragma once

#include <functional>

#include <sys/wait.h>
#include <unistd.h>

namespace velmor::test {

/// Runs in a child process of a user without special rights and gives what came of it.
inline bool asPlainUser(const std::function<bool()> &run)
{
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr uid_t kNobody = 65534;
        if (::geteuid() == 0 && (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0))
            ::_exit(2);
        ::_exit(run() ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace velmor::test
