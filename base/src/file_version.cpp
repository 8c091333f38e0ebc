// FileVersion: from the file's inode.
#include "base/file_version.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "base/error.h"
#include "base/path.h"

namespace brindlehum {

FileVersion FileVersion::of(const std::filesystem::path& path) {
    struct stat facts {};
    if (::stat(path.c_str(), &facts) != 0) { throw Error(openFailure(path, std::strerror(errno))); }
    constexpr int64_t nanoseconds = 1000000000;
    return {uint64_t(facts.st_dev), uint64_t(facts.st_ino), int64_t(facts.st_size),
            int64_t(facts.st_mtim.tv_sec) * nanoseconds + int64_t(facts.st_mtim.tv_nsec)};
}

}  // namespace brindlehum
