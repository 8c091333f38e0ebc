// Reads what the kernel says of memory. Where an allocation is granted beyond that, the process is killed when it is
// used.
#include "base/memory_left.h"

#include <algorithm>
#include <fstream>
#include <limits>
#include <optional>
#include <string>

namespace brindlehum {
namespace {

constexpr int64_t unknown = std::numeric_limits<int64_t>::max();

// The number in a file; none for "max".
std::optional<int64_t> numberIn(const std::filesystem::path& file) {
    std::ifstream in(file);
    int64_t value = 0;
    return in >> value ? std::optional(value) : std::nullopt;
}

int64_t availableInSystem(const std::filesystem::path& root) {
    std::ifstream lines(root / "proc/meminfo");
    for (std::string key; lines >> key; lines.ignore(std::numeric_limits<std::streamsize>::max(), '\n')) {
        int64_t kibibytes = 0;
        if (key == "MemAvailable:" && lines >> kibibytes) { return kibibytes * 1024; }
    }
    return unknown;
}

// A limit of an outer group holds for the inner ones, too.
int64_t leftInGroups(const std::filesystem::path& root) {
    std::ifstream lines(root / "proc/self/cgroup");
    std::string line;
    while (std::getline(lines, line) && !line.starts_with("0::/")) {}
    if (!line.starts_with("0::/")) { return unknown; }
    const auto top = root / "sys/fs/cgroup";
    int64_t left = unknown;
    for (std::filesystem::path group = line.substr(4);; group = group.parent_path()) {
        const auto most = numberIn(top / group / "memory.max");
        const auto used = numberIn(top / group / "memory.current");
        if (most && used) { left = std::min(left, std::max<int64_t>(*most - *used, 0)); }
        if (group.empty()) { return left; }
    }
}

}  // namespace

int64_t memoryLeft(const std::filesystem::path& root) {
    return std::min(availableInSystem(root), leftInGroups(root));
}

}  // namespace brindlehum
