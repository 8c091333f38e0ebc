// brindlehum-cli as a child process.
#include "cli_child.h"

#include <cstdlib>
#include <sstream>

namespace brindlehum::test {
namespace {

// As the shell reads it back.
std::string quoted(std::string word) {
    for (size_t at = 0; (at = word.find('\'', at)) != std::string::npos; at += 4) { word.replace(at, 1, "'\\''"); }
    return "'" + word + "' ";
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) { out.push_back(line); }
    return out;
}

}  // namespace

CliResult runCli(const std::vector<std::string>& words, const std::vector<std::string>& environment) {
    const TempFolder folder;
    const auto out = folder / "out";
    const auto err = folder / "err";
    std::string command = "env ";
    for (const std::string& variable : environment) { command += quoted(variable); }
    command += quoted(BRINDLEHUM_CLI);
    for (const std::string& word : words) { command += quoted(word); }
    CliResult result;
    const int status = std::system((command + "> " + quoted(out) + "2> " + quoted(err)).c_str());
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.output = readBytes(out);
    result.errors = lines(readBytes(err));
    for (const std::string& line : lines(result.output)) {
        if (line.starts_with("{")) { result.objects.push_back(nlohmann::json::parse(line)); }
    }
    return result;
}

std::vector<std::string> homeIn(const TempFolder& folder) {
    const std::string path = folder.path().string();
    return {"HOME=" + path, "XDG_CONFIG_HOME=" + path + "/config", "XDG_DATA_HOME=" + path + "/data"};
}

}  // namespace brindlehum::test
