// ByteSink over a regular file, with positioned writes.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

#include "base/byte_sink.h"
#include "base/error.h"
#include "base/text.h"

namespace brindlehum {
namespace {

class FileSink final : public ByteSink {
public:
    explicit FileSink(const std::filesystem::path& path) : path_(path) {
        std::error_code failure;
        if (path.has_parent_path()) { std::filesystem::create_directories(path.parent_path(), failure); }
        if (failure) { fail(failure.value()); }
        // O_NONBLOCK: a pipe without a reader is refused at once instead of waiting for one.
        descriptor_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666);
        if (descriptor_ < 0) { fail(errno); }
        struct stat status {};
        if (::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode)) { return; }
        ::close(descriptor_);
        fail("it isn't a regular file");
    }
    ~FileSink() override {
        if (descriptor_ >= 0) { ::close(descriptor_); }
    }

    void writeAt(uint64_t offset, std::span<const uint8_t> bytes) override {
        while (!bytes.empty()) {
            const ssize_t done = ::pwrite(descriptor_, bytes.data(), bytes.size(), off_t(offset));
            if (done < 0 && errno == EINTR) { continue; }
            if (done <= 0) { fail(done < 0 ? errno : ENOSPC); }
            bytes = bytes.subspan(size_t(done));
            offset += uint64_t(done);
        }
    }

    void finish(uint64_t length, bool sync) override {
        if (::ftruncate(descriptor_, off_t(length)) != 0) { fail(errno); }
        if (sync && ::fsync(descriptor_) != 0) { fail(errno); }
        // Some file systems report a full disk or a quota only now.
        const int descriptor = std::exchange(descriptor_, -1);
        if (::close(descriptor) != 0 && errno != EINTR) { fail(errno); }
    }

private:
    [[noreturn]] void fail(int reason) const { fail(std::strerror(reason)); }
    [[noreturn]] void fail(const std::string& reason) const {
        throw Error("Couldn't write " + repairUtf8(path_.native()) + ": " + reason);
    }

    std::filesystem::path path_;
    int descriptor_ = -1;
};

}  // namespace

std::unique_ptr<ByteSink> makeFileSink(const std::filesystem::path& path) {
    return std::make_unique<FileSink>(path);
}

}  // namespace brindlehum
