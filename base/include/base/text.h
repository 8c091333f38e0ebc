// Small work on text from files and their names.
#pragma once

#include <string>
#include <string_view>

namespace brindlehum {

// Every ill-formed sequence becomes one U+FFFD, cut as the Unicode standard recommends (maximal subparts, 3.9).
std::string repairUtf8(std::string_view bytes);

// Letters A to Z only; other bytes stay.
std::string lowerAscii(std::string text);
std::string upperAscii(std::string text);

// Without whitespace and line ends at both sides, those of Unicode included. `text` is valid UTF-8.
std::string_view trimmed(std::string_view text);

}  // namespace brindlehum
