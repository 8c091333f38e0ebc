// brindlehum-cli as a child process.
#pragma once

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>
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

// As the shell reads it back.
inline std::string quoted(std::string word) {
    for (size_t at = 0; (at = word.find('\'', at)) != std::string::npos; at += 4) { word.replace(at, 1, "'\\''"); }
    return "'" + word + "' ";
}

// Runs the tool with these words and waits for it. `environment` entries ("NAME=value") go before ours.
inline CliResult runCli(const std::vector<std::string>& words, const std::vector<std::string>& environment = {}) {
    const TempFolder folder;
    std::string command = "env ";
    for (const std::string& variable : environment) { command += quoted(variable); }
    command += quoted(BRINDLEHUM_CLI);
    for (const std::string& word : words) { command += quoted(word); }
    const int status = std::system((command + "> " + quoted(folder / "out") + "2> " + quoted(folder / "err")).c_str());
    CliResult result{WIFEXITED(status) ? WEXITSTATUS(status) : -1, {}, readBytes(folder / "out"), {}};
    std::istringstream output(result.output);
    std::istringstream errors(readBytes(folder / "err"));
    for (std::string line; std::getline(output, line);) {
        if (line.starts_with("{")) { result.objects.push_back(nlohmann::json::parse(line)); }
    }
    for (std::string line; std::getline(errors, line);) { result.errors.push_back(line); }
    return result;
}

// An environment whose user has its settings and catalog in that folder.
inline std::vector<std::string> homeIn(const TempFolder& folder) {
    const std::string path = folder.path().string();
    return {"HOME=" + path, "XDG_CONFIG_HOME=" + path + "/config", "XDG_DATA_HOME=" + path + "/data"};
}

}  // namespace brindlehum::test
