// libFuzzer harness over probing, decoding and seeking. Run with a copy of corpus/probe as its corpus folder.
#include "folder.h"
#include "probe_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t maxBytes = 64 * 1024;  // beyond that only the time a run takes grows
    if (size > maxBytes) { return 0; }
    static const brindlehum::test::FuzzFolder folder;
    brindlehum::test::probeBytes(data, size, folder.path);
    return 0;
}
