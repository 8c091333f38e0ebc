// TemporaryFile: creates and locks the file, and clears the leftovers of dead writers.
#include "temporary_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "base/error.h"
#include "base/path.h"
#include "base/text.h"

namespace brindlehum {

namespace {

constexpr std::string_view suffix = ".bh-tmp";

std::string hiddenName(const std::string& name, int folder) {
    constexpr long usualLimit = 255;  // bytes
    const long limit = ::fpathconf(folder, _PC_NAME_MAX);
    const size_t room = size_t(limit > 0 ? limit : usualLimit) - 1 - suffix.size();
    return "." + std::string(cutUtf8(name, room)).append(suffix);
}

}  // namespace

TemporaryFile::TemporaryFile(const std::filesystem::path& target, int folder, mode_t mode, bool wait)
    : target_(target), folder_(folder), wait_(wait), name_(hiddenName(target.filename().string(), folder)) {
    create(mode);
}

TemporaryFile::~TemporaryFile() {
    if (!renamed_ && holdsItsName()) { ::unlinkat(folder_, name_.c_str(), 0); }
}

bool TemporaryFile::isName(std::string_view name) {
    return name.size() > suffix.size() + 1 && name.starts_with('.') && name.ends_with(suffix);
}

void TemporaryFile::removeDead(const std::string& name, int folder, int64_t idleSeconds) {
    const Descriptor file(::openat(folder, name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat open {};
    if (!file.isOpen() || ::fstat(file.number(), &open) != 0 || !S_ISREG(open.st_mode)) { return; }
    if (open.st_uid != ::geteuid() || ::time(nullptr) - open.st_mtim.tv_sec < idleSeconds) { return; }
    // Without a lock the writer may be alive.
    if (::flock(file.number(), LOCK_EX | LOCK_NB) != 0) { return; }
    struct stat named {};
    const bool isStill = ::fstatat(folder, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
                         named.st_dev == open.st_dev && named.st_ino == open.st_ino;
    if (isStill) { ::unlinkat(folder, name.c_str(), 0); }
}

void TemporaryFile::create(mode_t mode) {
    // Between its creation and its lock, a file looks like a leftover to another writer, who then removes it. So try
    // again; a waiting writer may lose a turn to each of the others.
    const int attempts = wait_ ? 1000 : 8;
    for (int i = 0; i < attempts; ++i) {
        file_ = Descriptor(::openat(folder_, name_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        if (file_.isOpen() && lock() && holdsItsName()) { return; }
        if (!file_.isOpen() && errno != EEXIST) { fail(errno); }
        if (!file_.isOpen()) { clearLeftover(); }
    }
    failBusy();
}

void TemporaryFile::clearLeftover() {
    for (const int access : {O_RDWR, O_RDONLY}) {
        file_ = Descriptor(::openat(folder_, name_.c_str(), access | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        if (file_.isOpen() || errno != EACCES) { break; }
    }
    if (!file_.isOpen() && errno == ENOENT) { return; }
    if (!file_.isOpen()) { fail(errno); }
    if (!lock()) { failBusy(); }
    if (holdsItsName() && ::unlinkat(folder_, name_.c_str(), 0) != 0) { fail(errno); }
    file_ = Descriptor();
}

// False when another writer holds the lock. If the file system has no locks, the checks of the name must suffice.
bool TemporaryFile::lock() const {
    while (::flock(file_.number(), wait_ ? LOCK_EX : LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) { return false; }
        if (errno != EINTR) { return true; }
    }
    return true;
}

bool TemporaryFile::holdsItsName() const {
    struct stat named {};
    struct stat open {};
    return file_.isOpen() && ::fstatat(folder_, name_.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           ::fstat(file_.number(), &open) == 0 && named.st_dev == open.st_dev && named.st_ino == open.st_ino;
}

int TemporaryFile::rename(const std::string& name, bool replaces) {
    const auto renamed = [&] {
        if (replaces) { return ::renameat(folder_, name_.c_str(), folder_, name.c_str()); }
        const int result = ::renameat2(folder_, name_.c_str(), folder_, name.c_str(), RENAME_NOREPLACE);
        if (result == 0 || (errno != EINVAL && errno != ENOSYS)) { return result; }
        // The file system can't exclude a file that comes at this very moment.
        struct stat there {};
        if (::fstatat(folder_, name.c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0) { errno = EEXIST; }
        return errno == EEXIST ? -1 : ::renameat(folder_, name_.c_str(), folder_, name.c_str());
    };
    if (renamed() != 0) { return errno; }
    renamed_ = true;
    file_ = Descriptor();  // it is the target now, and nobody writes to it
    return 0;
}

void TemporaryFile::fail(int error) const {
    throw Error(writeFailure(target_, std::strerror(error)));
}

void TemporaryFile::failBusy() const {
    throw Error(writeFailure(target_, "it is being written elsewhere"));
}

}  // namespace brindlehum
