// libFuzzer harness over probing, decoding and seeking. Run with a copy of corpus/probe as its corpus folder.
#include <cstdlib>

#include "probe_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t mostBytes = 64 * 1024;  // beyond that only the time a run takes grows
    if (size > mostBytes) return 0;
    // Removed again at the end of the run.
    struct Folder {
        std::filesystem::path path;
        ~Folder() {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
    };
    static const Folder folder{[] {
        const bool memory = std::filesystem::is_directory("/dev/shm");
        const auto base = memory ? std::filesystem::path("/dev/shm") : std::filesystem::temp_directory_path();
        std::string name = (base / "brindlehum-fuzz-XXXXXX").string();
        brindlehum::test::require(mkdtemp(name.data()) != nullptr, "a temporary folder");
        return std::filesystem::path(name);
    }()};
    brindlehum::test::probeBytes(data, size, folder.path);
    return 0;
}
