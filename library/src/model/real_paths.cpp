// RealPaths: asks the disk outside the lock.
#include "library/model/real_paths.h"

#include "base/path.h"

namespace brindlehum {

std::string RealPaths::look(const std::string& path) {
    std::string real = canonicalPath(path);
    const std::lock_guard guard(lock_);
    return known_[path] = std::move(real);
}

std::string RealPaths::of(const std::string& path) const {
    const std::lock_guard guard(lock_);
    const auto found = known_.find(path);
    return found == known_.end() ? path : found->second;
}

std::vector<std::string> RealPaths::of(const std::vector<std::string>& paths) const {
    std::vector<std::string> real;
    for (const std::string& path : paths) { real.push_back(of(path)); }
    return real;
}

}  // namespace brindlehum
