// RealPaths: the canonical forms of the library's roots; asks the disk for each only once.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace brindlehum {

// Any thread. Keeps each answer until forget(), because a search must not touch a share that hangs.
class RealPaths {
public:
    std::string of(const std::string& path);
    std::vector<std::string> of(const std::vector<std::string>& paths);
    void forget(const std::string& path);

private:
    std::mutex lock_;
    std::map<std::string, std::string> known_;
};

}  // namespace brindlehum
