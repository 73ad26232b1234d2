// What has to hold whatever the input: where it does not, the target ends with a crash, which is what a fuzzer looks
// for.
#pragma once

#include <cstdio>
#include <cstdlib>

inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

/// Tells what did not hold.
inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}
