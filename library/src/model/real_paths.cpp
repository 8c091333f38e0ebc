// RealPaths: asks the disk outside the lock, since it may take long.
#include "library/model/real_paths.h"

#include "base/path.h"

namespace brindlehum {

std::string RealPaths::of(const std::string& path) {
    {
        const std::lock_guard guard(lock_);
        if (const auto found = known_.find(path); found != known_.end()) { return found->second; }
    }
    std::string real = canonicalPath(path);
    const std::lock_guard guard(lock_);
    return known_[path] = std::move(real);
}

std::vector<std::string> RealPaths::of(const std::vector<std::string>& paths) {
    std::vector<std::string> real;
    for (const std::string& path : paths) { real.push_back(of(path)); }
    return real;
}

void RealPaths::forget(const std::string& path) {
    const std::lock_guard guard(lock_);
    known_.erase(path);
}

}  // namespace brindlehum
