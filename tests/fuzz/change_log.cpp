// libFuzzer harness over change logs. Run with a copy of corpus/change_log as its corpus folder.
#include "change_log_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t mostBytes = 16 * 1024;
    if (size > mostBytes) { return 0; }
    // Removed again at the end of the run, after the catalog in it has been closed.
    struct Folder {
        std::filesystem::path path;
        ~Folder() {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
    };
    static const Folder folder{[] {
        std::string name = (std::filesystem::temp_directory_path() / "brindlehum-fuzz-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) { std::abort(); }
        return std::filesystem::path(name);
    }()};
    static brindlehum::test::LogProbe probe(folder.path);
    probe.look({reinterpret_cast<const char*>(data), size});
    return 0;
}
