// libFuzzer harness over USER blocks, file names and category lists. Run with a copy of corpus/meta_text as its corpus
// folder.
#include "meta_text_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t maxBytes = 16 * 1024;
    if (size <= maxBytes) { brindlehum::test::metaText({reinterpret_cast<const char*>(data), size}); }
    return 0;
}
