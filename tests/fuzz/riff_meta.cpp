// libFuzzer harness over the chunk walk, `bext` and iXML of WAV files, read and rewritten. Run with a copy of
// corpus/riff_meta as its corpus folder.
#include "riff_meta_input.h"

#include "folder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t maxBytes = 64 * 1024;
    if (size > maxBytes) { return 0; }
    static const brindlehum::test::FuzzFolder folder;
    brindlehum::test::riffMetaBytes({reinterpret_cast<const char*>(data), size}, folder.path);
    return 0;
}
