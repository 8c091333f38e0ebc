// LineReader: reads the file in pieces into one buffer.
#include "team/line_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/error.h"
#include "base/path.h"

namespace brindlehum {

namespace {
constexpr size_t pieceBytes = size_t{256} << 10;
}

LineReader::LineReader(const std::filesystem::path& file, int64_t offset)
    : file_(::open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC)), offset_(offset) {
    struct stat facts {};
    if (!file_.isOpen() || ::fstat(file_.number(), &facts) != 0 || !S_ISREG(facts.st_mode)) {
        throw Error("Can't read " + printableName(file));
    }
    char before = '\n';
    if (offset_ > 0 && (::pread(file_.number(), &before, 1, offset_ - 1) != 1 || before != '\n')) { offset_ = 0; }
    if (offset_ < 0) { offset_ = 0; }
    ::lseek(file_.number(), offset_, SEEK_SET);
}

std::optional<std::string_view> LineReader::next() {
    while (true) {
        const size_t end = buffer_.find('\n', searched_);
        if (end != std::string::npos) {
            const std::string_view line = std::string_view(buffer_).substr(start_, end - start_);
            const bool cut = passedOver_ > 0;
            offset_ += passedOver_ + int64_t(line.size()) + 1;
            passedOver_ = 0;
            start_ = searched_ = end + 1;
            if (cut || line.size() > maxLineBytes) { continue; }
            return line;
        }
        searched_ = buffer_.size();
        if (buffer_.size() - start_ > maxLineBytes) {
            passedOver_ += int64_t(buffer_.size() - start_);
            buffer_.clear();
            start_ = searched_ = 0;
        }
        if (!fill()) { return std::nullopt; }
    }
}

bool LineReader::fill() {
    buffer_.erase(0, start_);
    searched_ -= start_;
    start_ = 0;
    const size_t held = buffer_.size();
    buffer_.resize(held + pieceBytes);
    ssize_t got = 0;
    do { got = ::read(file_.number(), buffer_.data() + held, pieceBytes); } while (got < 0 && errno == EINTR);
    buffer_.resize(held + size_t(got > 0 ? got : 0));
    return got > 0;
}

}  // namespace brindlehum
