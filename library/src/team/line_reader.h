// LineReader: the complete lines of a file that others are writing, from an offset on, in pieces of bounded size.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "base/descriptor.h"

namespace brindlehum {

class LineReader {
public:
    // Longer lines are skipped. The longest that makes sense is a few kilobytes.
    static constexpr size_t maxLineBytes = size_t{4} << 20;

    // `offset` is behind a line feed, or 0. A file that is shorter, or has another byte there, isn't the file that was
    // read before, and is read from its start. Throws Error when it isn't a regular file that can be read.
    LineReader(const std::filesystem::path& file, int64_t offset);

    // The next complete line without its line feed, valid until the next call; none at the end or when a line still
    // lacks its line feed.
    std::optional<std::string_view> next();
    // Behind the last line that was returned or skipped.
    int64_t offset() const { return offset_; }

private:
    bool fill();

    Descriptor file_;
    int64_t offset_;
    std::string buffer_;      // the file's bytes; the first `start_` were returned already
    size_t start_ = 0;        // of the next line in the buffer
    size_t searched_ = 0;     // bytes of the buffer known to hold no line feed behind start_
    int64_t passedOver_ = 0;  // bytes of an overlong line that were dropped from the buffer
};

}  // namespace brindlehum
