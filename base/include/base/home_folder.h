// The user's home folder, found even without an environment.
#pragma once

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace brindlehum {

// $HOME if it is an absolute path, else the folder in the user database, else "/". Main thread.
inline std::filesystem::path homeFolder() {
    if (const char* home = std::getenv("HOME"); home != nullptr && home[0] == '/') { return home; }
    const passwd* entry = getpwuid(getuid());
    return entry != nullptr && entry->pw_dir != nullptr && entry->pw_dir[0] == '/' ? entry->pw_dir : "/";
}

}  // namespace brindlehum
