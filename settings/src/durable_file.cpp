// Replacement of a whole file by write beside, sync, rename, sync of the folder.
#include "durable_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string_view>

namespace brindlehum {

namespace {

constexpr mode_t privateFolder = 0700;
constexpr mode_t privateFile = 0600;
constexpr mode_t permissionBits = 0777;

void makeFolders(const std::filesystem::path& folder) {
    std::error_code ignored;
    if (folder.empty() || std::filesystem::exists(folder, ignored)) { return; }
    if (folder.has_relative_path()) { makeFolders(folder.parent_path()); }
    ::mkdir(folder.c_str(), privateFolder);
}

bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR) { continue; }
        if (written <= 0) { return false; }
        text.remove_prefix(size_t(written));
    }
    return true;
}

}  // namespace

LockedFolder::LockedFolder(const std::filesystem::path& folder) {
    makeFolders(folder);
    descriptor_ = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor_ < 0) { return; }
    while (::flock(descriptor_, LOCK_EX) != 0 && errno == EINTR) {}
}

LockedFolder::~LockedFolder() {
    if (descriptor_ >= 0) { ::close(descriptor_); }
}

bool LockedFolder::rename(const std::string& from, const std::string& to) const {
    return ::renameat(descriptor_, from.c_str(), descriptor_, to.c_str()) == 0;
}

bool LockedFolder::writeSynced(const std::string& name, const std::string& text, unsigned mode) const {
    const int flags = O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC;
    const int file = ::openat(descriptor_, name.c_str(), flags, privateFile);
    if (file < 0) { return false; }
    const bool written = ::fchmod(file, mode) == 0 && writeAll(file, text) && ::fsync(file) == 0;
    return ::close(file) == 0 && written;
}

bool LockedFolder::replace(const std::string& name, const std::string& text) const {
    struct stat old {};
    const bool exists = ::fstatat(descriptor_, name.c_str(), &old, 0) == 0;
    // One fixed name under the lock, so that a crash leaves at most one such file, which the next write takes.
    const std::string beside = name + ".new";
    if (!writeSynced(beside, text, exists ? old.st_mode & permissionBits : privateFile) || !rename(beside, name)) {
        ::unlinkat(descriptor_, beside.c_str(), 0);
        return false;
    }
    ::fsync(descriptor_);
    return true;
}

}  // namespace brindlehum
