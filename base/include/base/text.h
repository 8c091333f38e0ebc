// Text helpers for the contents of files, their names and their tags.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brindlehum {

// Replaces every ill-formed sequence by one U+FFFD, split as the Unicode standard recommends (maximal subparts, 3.9).
std::string repairUtf8(std::string_view bytes);
// The length of the UTF-8 character at the start; 0 when there is none.
size_t characterLength(std::string_view bytes);
// The start of `text` (valid UTF-8), at most `bytes` long and cut between characters.
std::string_view cutUtf8(std::string_view text, size_t bytes);

// Change the letters A to Z only; other bytes stay.
std::string lowerAscii(std::string_view text);
std::string upperAscii(std::string_view text);

// Without whitespace and line ends, including those of Unicode, at both ends. `text` is valid UTF-8.
std::string_view trimmed(std::string_view text);
// True when `text` holds nothing but such whitespace.
bool isBlank(std::string_view text);

// The parts between the separators, including empty ones: always one more than there are separators.
std::vector<std::string_view> split(std::string_view text, std::string_view separators);

}  // namespace brindlehum
