// ByteSink over a regular file, with positioned writes.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "base/byte_sink.h"
#include "base/descriptor.h"
#include "base/error.h"
#include "base/path.h"

namespace brindlehum {
namespace {

class FileSink final : public ByteSink {
public:
    explicit FileSink(const std::filesystem::path& path) : path_(path) {
        std::error_code failure;
        if (path.has_parent_path()) { std::filesystem::create_directories(path.parent_path(), failure); }
        if (failure) { fail(failure.value()); }
        // O_NONBLOCK: opening a pipe without a reader fails at once instead of waiting for one.
        const int flags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
        file_ = Descriptor(::open(path.c_str(), flags, 0666));
        if (!file_.isOpen()) { fail(errno); }
        struct stat status {};
        if (::fstat(file_.number(), &status) != 0 || !S_ISREG(status.st_mode)) { fail("it isn't a regular file"); }
    }

    void writeAt(uint64_t offset, std::span<const uint8_t> bytes) override {
        while (!bytes.empty()) {
            const ssize_t done = ::pwrite(file_.number(), bytes.data(), bytes.size(), off_t(offset));
            if (done < 0 && errno == EINTR) { continue; }
            if (done <= 0) { fail(done < 0 ? errno : ENOSPC); }
            bytes = bytes.subspan(size_t(done));
            offset += uint64_t(done);
        }
    }

    void finish(uint64_t length, bool sync) override {
        if (::ftruncate(file_.number(), off_t(length)) != 0) { fail(errno); }
        if (sync && ::fsync(file_.number()) != 0) { fail(errno); }
        // Some file systems report a full disk or a quota only now.
        if (!file_.close()) { fail(errno); }
    }

private:
    [[noreturn]] void fail(int reason) const { fail(std::strerror(reason)); }
    [[noreturn]] void fail(const std::string& reason) const { throw Error(writeFailure(path_, reason)); }

    std::filesystem::path path_;
    Descriptor file_;
};

}  // namespace

std::unique_ptr<ByteSink> makeFileSink(const std::filesystem::path& path) {
    return std::make_unique<FileSink>(path);
}

}  // namespace brindlehum
