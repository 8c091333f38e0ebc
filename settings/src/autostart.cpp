// Autostart: the entry that desktops read when a session starts.
#include "settings/autostart.h"

#include <cstdlib>
#include <fstream>
#include <string_view>

#include "base/error.h"
#include "base/file_replacement.h"
#include "base/home_folder.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

// A value of the type string.
std::string escaped(std::string_view text) {
    std::string out;
    for (const char c : text) {
        if (c == '\\') { out += '\\'; }
        if (c == '\n') {
            out += "\\n";
        } else {
            out += c;
        }
    }
    return out;
}

// The argument that the Exec key takes apart again: quoted, and % doubled.
std::string execArgument(std::string_view path) {
    std::string out = "\"";
    for (const char c : path) {
        if (std::string_view("\"`$\\").find(c) != std::string_view::npos) { out += '\\'; }
        if (c == '%') { out += '%'; }
        out += c;
    }
    return out + '"';
}

std::string entry(const fs::path& program) {
    return "[Desktop Entry]\nType=Application\nName=Brindlehum\nComment=Waits in the status "
           "menu\nIcon=brindlehum\nTryExec=" +
           escaped(program.native()) + "\nExec=" + escaped(execArgument(program.native())) + "\nTerminal=false\n";
}

}  // namespace

Autostart::Autostart(fs::path file, fs::path program) : file_(std::move(file)), program_(std::move(program)) {
    for (const auto signal : {&QFileSystemWatcher::fileChanged, &QFileSystemWatcher::directoryChanged}) {
        connect(&watcher_, signal, this, [this] {
            watch();
            Q_EMIT changed();
        });
    }
    watch();
}

fs::path Autostart::defaultFile() {
    const char* config = std::getenv("XDG_CONFIG_HOME");
    const auto folder = config && *config == '/' ? fs::path(config) : homeFolder() / ".config";
    return folder / "autostart" / "brindlehum.desktop";
}

bool Autostart::isOn() const {
    std::ifstream in(file_);
    bool isEntry = false;
    for (std::string line; std::getline(in, line);) {
        if (line == "[Desktop Entry]") { isEntry = true; }
        if (line == "Hidden=true" || line == "X-GNOME-Autostart-enabled=false") { return false; }
    }
    return isEntry;
}

std::string Autostart::set(bool on) {
    std::string problem;
    try {
        if (on) {
            fs::create_directories(file_.parent_path());
            FileReplacement::writeText(file_, entry(program_));
        } else {
            fs::remove(file_);
        }
    } catch (const std::exception& error) { problem = error.what(); }
    watch();
    return problem;
}

// The folder tells of a file that comes or goes, the file of what is written into it.
void Autostart::watch() {
    std::error_code error;
    for (const auto& path : {file_, file_.parent_path()}) {
        if (fs::exists(path, error)) { watcher_.addPath(QString::fromStdString(path.native())); }
    }
}

}  // namespace brindlehum
