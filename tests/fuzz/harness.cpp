// libFuzzer harness, built once for each *_input.h. Run with a copy of corpus/NAME as its corpus folder, and with
// TMPDIR=/dev/shm to spare the disk.
#include FUZZ_INPUT

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t maxBytes = 64 * 1024;  // beyond that only the time a run takes grows
    static const brindlehum::test::TempFolder folder;
    if (size <= maxBytes) {
        brindlehum::test::FUZZ_FUNCTION({reinterpret_cast<const char*>(data), size}, folder.path());
    }
    return 0;
}
