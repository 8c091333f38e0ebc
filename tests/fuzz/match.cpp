// libFuzzer harness over match expressions. Run with a copy of corpus/match as its corpus folder.
#include <cstdint>

#include "match_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t maxBytes = 16 * 1024;  // beyond that only the time a run takes grows
    static brindlehum::test::MatchProbe probe;
    if (size <= maxBytes) { probe.look({reinterpret_cast<const char*>(data), size}); }
    return 0;
}
