// renameToFreeName: one system call if the file system supports it, else two.
#include "model/rename_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace brindlehum {

bool renameToFreeName(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) { return true; }
    if (errno != EINVAL && errno != ENOSYS) { return false; }
    // If the file system has no such call, a hard link does the same. If it has no hard links either, only a check
    // before the rename is possible.
    if (::link(from.c_str(), to.c_str()) == 0) { return ::unlink(from.c_str()) == 0; }
    if (errno == EEXIST || ::faccessat(AT_FDCWD, to.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0) { return false; }
    return ::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace brindlehum
