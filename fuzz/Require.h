#pragma once

#include <cstdio>
#include <cstdlib>

namespace quorl::fuzzing {

/// Ends the program, so that the fuzzer keeps the input, where what always holds does not.
inline void require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

} // namespace quorl::fuzzing
