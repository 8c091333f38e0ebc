// MemoryFile over memfd_create(2).
#include "base/memory_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "base/error.h"

namespace brindlehum {

MemoryFile::MemoryFile() : file_(::memfd_create("brindlehum", MFD_CLOEXEC)) {
    if (!file_.isOpen()) { throw Error(std::string("Couldn't make a file in memory: ") + std::strerror(errno)); }
}

void MemoryFile::append(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t done = ::write(file_.number(), bytes.data(), bytes.size());
        if (done < 0 && errno == EINTR) { continue; }
        if (done <= 0) { throw Error(std::string("Couldn't write to a file in memory: ") + std::strerror(errno)); }
        bytes.remove_prefix(size_t(done));
    }
}

std::filesystem::path MemoryFile::path() const {
    return "/proc/self/fd/" + std::to_string(file_.number());
}

}  // namespace brindlehum
