#pragma once

// An oracle of a fuzz target: a broken promise aborts, so the fuzzer keeps the input that broke it
// and the replay of the corpus fails.

#include <cstdio>
#include <cstdlib>

#define FUZZ_CHECK(condition, what)                                                                \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, what);                         \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)
