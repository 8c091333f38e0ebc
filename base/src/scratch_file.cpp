// ScratchFile: a file that is unlinked at once.
#include "base/scratch_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/error.h"

namespace brindlehum {
namespace {

[[noreturn]] void fail(const char* what) {
    throw Error(std::string("Couldn't ") + what + " a temporary file: " + std::strerror(errno));
}

Descriptor unnamedFile(const std::string& folder) {
    Descriptor file(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
    if (file.isOpen()) { return file; }
    // Not every file system makes a file without a name.
    std::string name = folder + "/brindlehum-XXXXXX";
    Descriptor named(::mkostemp(name.data(), O_CLOEXEC));
    if (named.isOpen()) { ::unlink(name.c_str()); }
    return named;
}

}  // namespace

ScratchFile::ScratchFile() {
    const char* chosen = std::getenv("TMPDIR");
    if (chosen != nullptr && *chosen != '\0') { file_ = unnamedFile(chosen); }
    for (const char* folder : {"/var/tmp", "/tmp"}) {
        if (!file_.isOpen()) { file_ = unnamedFile(folder); }
    }
    if (!file_.isOpen()) { fail("make"); }
}

void ScratchFile::append(const void* data, size_t bytes) {
    const char* from = static_cast<const char*>(data);
    while (bytes > 0) {
        const ssize_t done = ::write(file_.number(), from, bytes);
        if (done < 0 && errno == EINTR) { continue; }
        if (done <= 0) { fail("write"); }
        from += done;
        bytes -= size_t(done);
    }
}

void ScratchFile::read(int64_t offset, void* out, size_t bytes) const {
    char* into = static_cast<char*>(out);
    while (bytes > 0) {
        const ssize_t done = ::pread(file_.number(), into, bytes, off_t(offset));
        if (done < 0 && errno == EINTR) { continue; }
        if (done == 0) { errno = EIO; }
        if (done <= 0) { fail("read"); }
        into += done;
        offset += done;
        bytes -= size_t(done);
    }
}

}  // namespace brindlehum
