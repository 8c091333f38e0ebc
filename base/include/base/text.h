// Small work on text: what files, their names and their tags hold.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brindlehum {

// Every ill-formed sequence becomes one U+FFFD, cut as the Unicode standard recommends (maximal subparts, 3.9).
std::string repairUtf8(std::string_view bytes);
// The start of valid UTF-8, at most `bytes` long and cut between characters.
std::string_view cutUtf8(std::string_view text, size_t bytes);

// Letters A to Z only; other bytes stay.
std::string lowerAscii(std::string_view text);
std::string upperAscii(std::string_view text);

// Without whitespace and line ends at both sides, those of Unicode included. `text` is valid UTF-8.
std::string_view trimmed(std::string_view text);
// Whether nothing but such whitespace is in it.
bool isBlank(std::string_view text);

// The parts between any of the separators, empty ones included: one more than there are separators.
std::vector<std::string_view> split(std::string_view text, std::string_view separators);

}  // namespace brindlehum
