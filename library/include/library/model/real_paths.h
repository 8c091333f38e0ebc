// RealPaths: the canonical forms of the library's roots, as the disk gave them last.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace brindlehum {

// Any thread.
class RealPaths {
public:
    // Asks the disk, which may take for ever, and keeps its answer.
    std::string look(const std::string& path);
    // The last answer; before the first one the path as it is. Never asks the disk: a share that hangs must not hold up
    // the search in other roots.
    std::string of(const std::string& path) const;
    std::vector<std::string> of(const std::vector<std::string>& paths) const;

private:
    mutable std::mutex lock_;
    std::map<std::string, std::string> known_;
};

}  // namespace brindlehum
