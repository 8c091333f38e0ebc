// LogOwner: who writes a change log: a user on a machine, under a name that stays when the host is renamed.
#pragma once

#include <filesystem>
#include <string>

namespace brindlehum {

struct LogOwner {
    std::string user;
    std::string host;
    std::string machineId;             // the system's; empty if there is none
    std::filesystem::path dataFolder;  // of this user; may be shared by several machines

    // This process's. Any thread.
    static LogOwner here();
    // "user@host#identity", with the host's name at the first call on this machine. Stores it in the data folder.
    // Without a machine id and a folder that can be written, "user@host".
    std::string name() const;
    // True when the log of this name, without its extension, is `owner`'s: it has the same user and identity, or it is
    // the name that older versions used.
    static bool isOwn(const std::string& log, const std::string& owner);
};

}  // namespace brindlehum
