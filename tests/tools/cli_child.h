// brindlehum-cli as a child process.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/audio_files.h"

namespace brindlehum::test {

struct CliResult {
    int exitCode = -1;
    std::vector<nlohmann::json> objects;  // one a line of stdout
    std::string output;                   // stdout, unchanged
    std::vector<std::string> errors;      // lines of stderr
};

// Runs the tool with these words and waits for it. `environment` entries ("NAME=value") go before ours.
CliResult runCli(const std::vector<std::string>& words, const std::vector<std::string>& environment = {});

// An environment whose user has its settings and catalog in that folder.
std::vector<std::string> homeIn(const TempFolder& folder);

}  // namespace brindlehum::test
