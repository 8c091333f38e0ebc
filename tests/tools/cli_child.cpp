// brindlehum-cli as a child process.
#include "cli_child.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <sstream>
#include <stdexcept>

namespace brindlehum::test {
namespace {

std::vector<char*> pointers(const std::vector<std::string>& strings) {
    std::vector<char*> out;
    for (const std::string& s : strings) { out.push_back(const_cast<char*>(s.c_str())); }
    out.push_back(nullptr);
    return out;
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
    std::vector<std::string> arguments = {BRINDLEHUM_CLI};
    arguments.insert(arguments.end(), words.begin(), words.end());
    std::vector<std::string> variables = environment;
    for (char** v = environ; *v; ++v) { variables.emplace_back(*v); }

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, err.c_str(), O_WRONLY | O_CREAT, 0600);
    pid_t child = 0;
    const int fault =
        posix_spawn(&child, BRINDLEHUM_CLI, &actions, nullptr, pointers(arguments).data(), pointers(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    if (fault != 0) { throw std::runtime_error(std::string("can't start the tool: ") + std::strerror(fault)); }
    int status = 0;
    waitpid(child, &status, 0);

    CliResult result;
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
