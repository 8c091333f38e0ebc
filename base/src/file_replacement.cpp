// FileReplacement: lock, write, sync, swap.
#include "base/file_replacement.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "base/error.h"
#include "file_attributes.h"

namespace brindlehum {

namespace {

constexpr size_t stepBytes = 4 << 20;

Error rewriteFailure(const std::filesystem::path& target, const std::string& reason) {
    return Error(printableName(target) + " can't be rewritten: " + reason);
}

bool isSameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// False when someone else holds the lock. Where a file system has no locks, the checks of the name have to do.
bool lock(int file) {
    while (::flock(file, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) { return false; }
        if (errno != EINTR) { return true; }
    }
    return true;
}

}  // namespace

std::filesystem::path followed(const std::filesystem::path& path) {
    std::error_code error;
    std::filesystem::path target = std::filesystem::canonical(path, error);
    if (error) { throw Error(openFailure(path, std::strerror(error.value()))); }
    return target;
}

FileReplacement::FileReplacement(const std::filesystem::path& target, const FileHandle& source)
    : target_(target),
      name_(target.filename().string()),
      temporary_("." + name_ + ".bh-tmp"),
      source_(source),
      folder_(::open(target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    try {
        if (folder_ < 0 || ::fstat(source.descriptor(), &before_) != 0) { fail(errno); }
        if (::faccessat(folder_, name_.c_str(), W_OK, AT_EACCESS) != 0) { fail(errno); }
        createTemporary();
        if (!sourceIsUnchanged()) { failChanged(); }
    } catch (...) {
        discard();
        throw;
    }
}

FileReplacement::~FileReplacement() {
    discard();
}

void FileReplacement::discard() {
    if (made_ && holdsItsName()) { ::unlinkat(folder_, temporary_.c_str(), 0); }
    if (file_ >= 0) { ::close(file_); }
    if (folder_ >= 0) { ::close(folder_); }
}

void FileReplacement::createTemporary() {
    // Between its creation and its lock a file looks like a leftover to another writer, who then removes it.
    constexpr int attempts = 8;
    // Whoever may read the source may lock what a crash leaves of its next version.
    const mode_t mode = (before_.st_mode & S_IROTH) ? S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH : S_IRUSR | S_IWUSR;
    for (int i = 0; i < attempts; ++i) {
        file_ = ::openat(folder_, temporary_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (file_ < 0 && errno != EEXIST) { fail(errno); }
        if (file_ < 0) {
            clearLeftover();
            continue;
        }
        if (lock(file_) && holdsItsName()) {
            made_ = true;
            return;
        }
        ::close(file_);
        file_ = -1;
    }
    throw rewriteFailure(target_, "it is being rewritten elsewhere");
}

void FileReplacement::clearLeftover() {
    for (const int access : {O_RDWR, O_RDONLY}) {
        file_ = ::openat(folder_, temporary_.c_str(), access | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
        if (file_ >= 0 || errno != EACCES) { break; }
    }
    if (file_ < 0 && errno == ENOENT) { return; }
    if (file_ < 0) { fail(errno); }
    if (!lock(file_)) { throw rewriteFailure(target_, "it is being rewritten elsewhere"); }
    if (holdsItsName() && ::unlinkat(folder_, temporary_.c_str(), 0) != 0) { fail(errno); }
    ::close(file_);
    file_ = -1;
}

bool FileReplacement::holdsItsName() const {
    struct stat named {};
    struct stat open {};
    return ::fstatat(folder_, temporary_.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 && ::fstat(file_, &open) == 0 &&
           isSameFile(named, open);
}

bool FileReplacement::sourceIsUnchanged() const {
    struct stat named {};
    struct stat open {};
    if (::fstatat(folder_, name_.c_str(), &named, AT_SYMLINK_NOFOLLOW) != 0) { return false; }
    if (::fstat(source_.descriptor(), &open) != 0 || !isSameFile(named, open)) { return false; }
    return open.st_size == before_.st_size && open.st_size == source_.size() &&
           open.st_mtim.tv_sec == before_.st_mtim.tv_sec && open.st_mtim.tv_nsec == before_.st_mtim.tv_nsec;
}

void FileReplacement::reserve(uint64_t bytes) {
    // Where that can't be done, the writes find out themselves.
    if (::fallocate(file_, 0, 0, off_t(bytes)) != 0 && errno == ENOSPC) { fail(errno); }
}

void FileReplacement::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(file_, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) { continue; }
        if (written < 0) { fail(errno); }
        bytes.remove_prefix(size_t(written));
        passOn(size_t(written));
    }
}

void FileReplacement::passOn(size_t bytes) {
    constexpr int64_t portion = 16 << 20;
    written_ += int64_t(bytes);
    if (written_ - passedOn_ < portion) { return; }
    // Only a hint; the sync at the end is what counts.
    ::sync_file_range(file_, passedOn_, written_ - passedOn_, SYNC_FILE_RANGE_WRITE);
    passedOn_ = written_;
}

void FileReplacement::copy(uint64_t offset, uint64_t bytes) {
    // Inside of the kernel, which saves a pass over the memory; some file systems can't, or only say that they copied
    // 0.
    auto position = off64_t(offset);
    while (bytes > 0) {
        const size_t step = size_t(std::min<uint64_t>(bytes, stepBytes));
        const ssize_t copied = ::copy_file_range(source_.descriptor(), &position, file_, nullptr, step, 0);
        if (copied < 0 && errno == EINTR) { continue; }
        if (copied <= 0) { return copyByHand(uint64_t(position), bytes); }
        bytes -= uint64_t(copied);
        passOn(size_t(copied));
    }
}

void FileReplacement::copyByHand(uint64_t offset, uint64_t bytes) {
    const size_t most = size_t(std::min<uint64_t>(bytes, stepBytes));
    const auto buffer = std::make_unique<char[]>(most);
    while (bytes > 0) {
        const size_t step = size_t(std::min<uint64_t>(bytes, most));
        const int64_t got = source_.readAt(int64_t(offset), buffer.get(), step);
        if (got < 0) { fail(errno); }
        if (size_t(got) < step) { failChanged(); }
        write({buffer.get(), step});
        offset += step;
        bytes -= step;
    }
}

ino_t FileReplacement::commit() {
    if (const int error = copyAttributes(source_.descriptor(), file_)) { fail(error); }
    if (::fsync(file_) != 0) { fail(errno); }
    if (!sourceIsUnchanged() || !holdsItsName()) { failChanged(); }
    if (::renameat(folder_, temporary_.c_str(), folder_, name_.c_str()) != 0) { fail(errno); }
    made_ = false;
    // Past the swap there is nothing to go back to; a folder that can't be synced leaves the old or the new file.
    ::fsync(folder_);
    struct stat facts {};
    return ::fstat(file_, &facts) == 0 ? facts.st_ino : 0;
}

void FileReplacement::fail(int error) const {
    throw rewriteFailure(target_, std::strerror(error));
}

void FileReplacement::failChanged() const {
    throw rewriteFailure(target_, "it has changed meanwhile");
}

}  // namespace brindlehum
