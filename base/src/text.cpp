// Text helpers on bytes: UTF-8 by the table of well-formed sequences (Unicode, table 3-7), letters, blanks, separators.
#include "base/text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace brindlehum {

namespace {

struct Lead {
    int continuations;  // 0: not a lead byte
    uint8_t low, high;  // range of the first continuation byte
};

Lead leadOf(uint8_t b) {
    if (b >= 0xC2 && b <= 0xDF) { return {1, 0x80, 0xBF}; }
    if (b == 0xE0) { return {2, 0xA0, 0xBF}; }
    if (b == 0xED) { return {2, 0x80, 0x9F}; }
    if (b >= 0xE1 && b <= 0xEF) { return {2, 0x80, 0xBF}; }
    if (b == 0xF0) { return {3, 0x90, 0xBF}; }
    if (b >= 0xF1 && b <= 0xF3) { return {3, 0x80, 0xBF}; }
    if (b == 0xF4) { return {3, 0x80, 0x8F}; }
    return {0, 0, 0};
}

// The length of the sequence at the start, and whether it is a whole character; else it is a maximal subpart.
std::pair<size_t, bool> sequenceAt(std::string_view bytes) {
    const auto first = uint8_t(bytes[0]);
    if (first < 0x80) { return {1, true}; }
    const Lead lead = leadOf(first);
    size_t length = 1;
    while (length <= size_t(lead.continuations) && length < bytes.size()) {
        const auto b = uint8_t(bytes[length]);
        if (length == 1 ? b < lead.low || b > lead.high : b < 0x80 || b > 0xBF) { break; }
        ++length;
    }
    return {length, lead.continuations > 0 && length == size_t(lead.continuations) + 1};
}

}  // namespace

std::string repairUtf8(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size());
    while (!bytes.empty()) {
        const auto [length, whole] = sequenceAt(bytes);
        out += whole ? bytes.substr(0, length) : "\xEF\xBF\xBD";
        bytes.remove_prefix(length);
    }
    return out;
}

size_t characterLength(std::string_view bytes) {
    if (bytes.empty()) { return 0; }
    const auto [length, whole] = sequenceAt(bytes);
    return whole ? length : 0;
}

std::string_view cutUtf8(std::string_view text, size_t bytes) {
    if (text.size() <= bytes) { return text; }
    while (bytes > 0 && (uint8_t(text[bytes]) & 0xC0) == 0x80) { --bytes; }
    return text.substr(0, bytes);
}

std::string lowerAscii(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c >= 'A' && c <= 'Z') { c = char(c - 'A' + 'a'); }
    }
    return out;
}

std::string upperAscii(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c >= 'a' && c <= 'z') { c = char(c - 'a' + 'A'); }
    }
    return out;
}

std::string_view trimmed(std::string_view text) {
    // The characters with White_Space in the Unicode Character Database.
    static constexpr std::array<std::string_view, 25> blanks = {
        "\t",           "\n",           "\v",           "\f",           "\r",           " ",
        "\xC2\x85",     "\xC2\xA0",     "\xE1\x9A\x80", "\xE2\x80\x80", "\xE2\x80\x81", "\xE2\x80\x82",
        "\xE2\x80\x83", "\xE2\x80\x84", "\xE2\x80\x85", "\xE2\x80\x86", "\xE2\x80\x87", "\xE2\x80\x88",
        "\xE2\x80\x89", "\xE2\x80\x8A", "\xE2\x80\xA8", "\xE2\x80\xA9", "\xE2\x80\xAF", "\xE2\x81\x9F",
        "\xE3\x80\x80"};
    const auto cut = [&](auto touches, auto remove) {
        for (;;) {
            const auto* blank = std::ranges::find_if(blanks, touches);
            if (blank == blanks.end()) { return; }
            remove(blank->size());
        }
    };
    cut([&](std::string_view b) { return text.starts_with(b); }, [&](size_t n) { text.remove_prefix(n); });
    cut([&](std::string_view b) { return text.ends_with(b); }, [&](size_t n) { text.remove_suffix(n); });
    return text;
}

bool isBlank(std::string_view text) {
    return trimmed(text).empty();
}

std::vector<std::string_view> split(std::string_view text, std::string_view separators) {
    std::vector<std::string_view> parts;
    for (;;) {
        const size_t end = text.find_first_of(separators);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) { return parts; }
        text.remove_prefix(end + 1);
    }
}

}  // namespace brindlehum
