// FileHandle: opens regular files only, and reads with pread.
#include "base/file_handle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "base/error.h"
#include "base/path.h"

namespace brindlehum {

// O_NONBLOCK: opening a pipe without a writer returns at once instead of waiting for one.
FileHandle::FileHandle(const std::filesystem::path& path)
    : file_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {
    if (!file_.isOpen()) { throw Error(openFailure(path, std::strerror(errno))); }
    struct stat status {};
    const bool known = ::fstat(file_.number(), &status) == 0;
    if (!known || !S_ISREG(status.st_mode)) {
        throw Error(openFailure(path, known && S_ISDIR(status.st_mode) ? "it is a folder" : "it isn't a regular file"));
    }
    size_ = status.st_size;
    modified_ = status.st_mtim;
}

int64_t FileHandle::readAt(int64_t offset, void* out, size_t bytes) const {
    constexpr size_t smallRead = 64;
    if (bytes > smallRead || offset < 0 || offset + int64_t(bytes) > int64_t(head_.size())) {
        return readFromSystem(offset, out, bytes);
    }
    if (headBytes_ < 0) { headBytes_ = readFromSystem(0, head_.data(), head_.size()); }
    const int64_t held = std::clamp<int64_t>(headBytes_ - offset, headBytes_ < 0 ? -1 : 0, int64_t(bytes));
    if (held > 0) { std::memcpy(out, head_.data() + offset, size_t(held)); }
    return held;
}

int64_t FileHandle::readFromSystem(int64_t offset, void* out, size_t bytes) const {
    size_t done = 0;
    while (done < bytes) {
        const ssize_t got =
            ::pread(file_.number(), static_cast<char*>(out) + done, bytes - done, off_t(offset + int64_t(done)));
        if (got == 0) { break; }
        if (got < 0 && errno == EINTR) { continue; }
        if (got < 0) { return -1; }
        done += size_t(got);
    }
    return int64_t(done);
}

int64_t FileCursor::read(void* out, int64_t bytes) {
    if (stop && stop()) {
        failed = true;
        return -1;
    }
    const int64_t got = bytes > 0 ? handle->readAt(position, out, size_t(bytes)) : 0;
    if (got < 0) { failed = true; }
    position += std::max<int64_t>(got, 0);
    return got;
}

int64_t FileCursor::seek(int64_t offset, int whence) {
    const int64_t base = whence == SEEK_CUR ? position : whence == SEEK_END ? handle->size() : 0;
    int64_t target = 0;
    if (__builtin_add_overflow(base, offset, &target) || target < 0) { return -1; }
    return position = target;
}

}  // namespace brindlehum
