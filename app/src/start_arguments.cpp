// StartArguments: sorts options, files and folders.
#include "app/start_arguments.h"

#include <unistd.h>

#include <QByteArray>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "audio/probe/audio_file_info.h"
#include "base/path.h"

namespace brindlehum {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view localFile = "file://";

// The path of an address on this machine; empty for another machine's. Paths are bytes, not text.
std::string pathOfAddress(std::string_view address) {
    std::string_view rest = address.substr(localFile.size());
    if (const std::string_view host = "localhost"; rest.starts_with(host)) { rest.remove_prefix(host.size()); }
    if (!rest.starts_with('/')) { return {}; }
    return QByteArray::fromPercentEncoding(QByteArray(rest.data(), qsizetype(rest.size()))).toStdString();
}

void addFile(const std::string& argument, StartRequest& request) {
    const bool isAddress = argument.starts_with(localFile);
    const std::string path = isAddress ? pathOfAddress(argument) : argument;
    if (path.empty()) {
        request.problems.push_back("Can't read " + printablePath(argument) + ": it isn't on this machine");
        return;
    }
    std::error_code error;
    const fs::path file = fs::absolute(path, error);
    const auto refuse = [&](const std::string& reason) {
        request.problems.push_back("Can't read " + printableName(path) + ": " + reason);
    };
    const bool isFolder = fs::is_directory(file, error);
    if (::access(file.c_str(), isFolder ? R_OK | X_OK : R_OK) != 0) { return refuse(std::strerror(errno)); }
    if (!isFolder && !AudioFileInfo::isAudioPath(file)) { return refuse("it isn't an audio file"); }
    request.files.push_back(file);
}

}  // namespace

const char* const StartArguments::help =
    "Usage: brindlehum [--play or --edit or --temp-edits] [FILE or FOLDER]...\n"
    "\n"
    "Shows the first file or folder, in the running Brindlehum if there is one. FILE may be a file:// address.\n"
    "\n"
    "      --play        plays the first file, also when auto-play is off\n"
    "      --edit        opens the first file in the editor and doesn't play it\n"
    "      --temp-edits  makes the temp edits of all files\n"
    "  -h, --help        shows this text\n"
    "      --version     shows the version\n"
    "      --            ends the options: all that follows is files\n";

StartArguments StartArguments::parse(const std::vector<std::string>& arguments) {
    StartArguments parsed;
    bool takesOptions = true;
    for (const std::string& argument : arguments) {
        if (!takesOptions || !argument.starts_with('-')) {
            if (!argument.empty()) { addFile(argument, parsed.request); }
        } else if (argument == "--") {
            takesOptions = false;
        } else if (argument == "--help" || argument == "-h") {
            parsed.wish = Wish::help;
        } else if (argument == "--edit") {
            parsed.request.aim = StartAim::edit;
        } else if (argument == "--play") {
            parsed.request.aim = StartAim::play;
        } else if (argument == "--temp-edits") {
            parsed.request.aim = StartAim::tempEdits;
        } else if (argument == "--version") {
            parsed.wish = Wish::version;
        } else {
            parsed.request.problems.push_back("Unknown option " + printablePath(argument));
        }
    }
    return parsed;
}

bool StartArguments::isResident(const std::string& programName) {
    return fs::path(programName).filename() == "brindlehum-resident";
}

}  // namespace brindlehum
