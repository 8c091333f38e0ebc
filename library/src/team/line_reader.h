// LineReader: the complete lines of a file that others are writing, from an offset on, read in pieces of limited size.
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
    // Skips longer lines. The longest useful line has a few kilobytes.
    static constexpr size_t maxLineBytes = size_t{4} << 20;

    // `offset` is 0 or follows a line feed. If the file is shorter, or has another byte there, it has been replaced, so
    // it is read from its start. Throws Error when it isn't a regular file that can be read.
    LineReader(const std::filesystem::path& file, int64_t offset);

    // The next complete line without its line feed, valid until the next call. None at the end, or when the last line
    // still lacks its line feed.
    std::optional<std::string_view> next();
    // The position after the last line that was returned or skipped.
    int64_t offset() const { return offset_; }

private:
    bool fill();

    Descriptor file_;
    int64_t offset_;
    std::string buffer_;      // bytes of the file; the first `start_` are used up
    size_t start_ = 0;        // of the next line in the buffer
    size_t searched_ = 0;     // where in the buffer to look for the next line feed
    int64_t passedOver_ = 0;  // bytes of an overlong line that were dropped from the buffer
};

}  // namespace brindlehum
