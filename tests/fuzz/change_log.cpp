// libFuzzer harness over change logs. Run with a copy of corpus/change_log as its corpus folder.
#include "change_log_input.h"
#include "folder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t maxBytes = 16 * 1024;
    if (size > maxBytes) { return 0; }
    static const brindlehum::test::FuzzFolder folder;  // removed after the catalog in it has been closed
    static brindlehum::test::LogProbe probe(folder.path);
    probe.look({reinterpret_cast<const char*>(data), size});
    return 0;
}
