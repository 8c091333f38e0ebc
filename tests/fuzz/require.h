// Ends the program when a promise is broken, so that a fuzzer and a test both see it.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace brindlehum::test {

inline void require(bool kept, const char* promise) {
    if (kept) { return; }
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
}

}  // namespace brindlehum::test
