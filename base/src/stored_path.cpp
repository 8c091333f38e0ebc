// Escapes the bytes of a path that UTF-8 has no place for.
#include "base/stored_path.h"

#include <optional>

#include "base/text.h"

namespace brindlehum {

namespace {

constexpr std::string_view mark = "//";
constexpr std::string_view digits = "0123456789ABCDEF";
constexpr size_t escapeLength = 4;

std::string escaped(char byte) {
    return std::string(mark) + digits[uint8_t(byte) >> 4] + digits[uint8_t(byte) & 0xF];
}

// The byte that the escape at the start of the text stands for; none when there is no escape.
std::optional<char> escapeAt(std::string_view text) {
    if (text.size() < escapeLength || !text.starts_with(mark)) { return std::nullopt; }
    const size_t high = digits.find(text[2]);
    const size_t low = digits.find(text[3]);
    if (high == std::string_view::npos || low == std::string_view::npos) { return std::nullopt; }
    const size_t byte = high * digits.size() + low;
    return byte >= 0x80 || byte == '/' ? std::optional(char(byte)) : std::nullopt;
}

}  // namespace

std::string storedPath(const std::filesystem::path& path) {
    std::string out;
    for (std::string_view rest = path.native(); !rest.empty();) {
        const size_t length = characterLength(rest);
        if (length == 0 || escapeAt(rest)) {
            out += escaped(rest[0]);
            rest.remove_prefix(1);
        } else {
            out += rest.substr(0, length);
            rest.remove_prefix(length);
        }
    }
    return out;
}

std::filesystem::path pathFromStored(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const std::optional<char> byte = escapeAt(text);
        out += byte.value_or(text[0]);
        text.remove_prefix(byte ? escapeLength : 1);
    }
    return out;
}

}  // namespace brindlehum
