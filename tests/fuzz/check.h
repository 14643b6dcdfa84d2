#ifndef TESTS_FUZZ_CHECK_H
#define TESTS_FUZZ_CHECK_H

#include <cstdio>
#include <cstdlib>

/// Ends the fuzzer, which then keeps the input, when what must always hold does not.
#define FUZZ_CHECK(condition)                                                                                \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition);              \
            std::abort();                                                                                    \
        }                                                                                                    \
    } while (false)

#endif
