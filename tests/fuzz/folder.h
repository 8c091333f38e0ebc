// A folder for the files of a fuzzer, in memory where the system has such a place; removed at the end of the run.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "fuzz/require.h"

namespace brindlehum::test {

struct FuzzFolder {
    std::filesystem::path path;

    FuzzFolder() {
        const bool memory = std::filesystem::is_directory("/dev/shm");
        const auto base = memory ? std::filesystem::path("/dev/shm") : std::filesystem::temp_directory_path();
        std::string name = (base / "brindlehum-fuzz-XXXXXX").string();
        require(mkdtemp(name.data()) != nullptr, "a temporary folder");
        path = name;
    }
    ~FuzzFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
};

}  // namespace brindlehum::test
