// brindlehum-cli as a child process, and the files that it wrote as libsndfile reads them.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/audio_files.h"

namespace brindlehum::test {

struct CliResult {
    int exitCode = -1;
    std::vector<nlohmann::json> objects;  // one a line of stdout
    std::string output;                   // stdout as it came
    std::vector<std::string> errors;      // lines of stderr
};

// Runs the tool with these words and waits for it. `environment` entries ("NAME=value") go before ours.
CliResult runCli(const std::vector<std::string>& words, const std::vector<std::string>& environment = {});

struct ReadWav {
    Planes planes;
    int rate = 0;
    uint32_t mask = 0;     // dwChannelMask as it stands in the file
    bool isFloat = false;  // 32-bit float
};
// Throws std::runtime_error when libsndfile can't read it.
ReadWav readWav(const std::filesystem::path& path);

}  // namespace brindlehum::test
