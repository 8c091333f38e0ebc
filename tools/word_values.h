// Parses the values that follow a word, strictly: UsageError names the word and the value.
#pragma once

#include <optional>
#include <string>

namespace brindlehum::cli {

double numberAfter(const std::string& word, const std::string& text, double least, double most);
int wholeNumberAfter(const std::string& word, const std::string& text, int least, int most);
[[noreturn]] void refuse(const std::string& word, const std::string& text);
// The value that `text` was read as, if it could be.
template <typename Value>
Value known(const std::string& word, const std::string& text, const std::optional<Value>& value) {
    if (!value) { refuse(word, text); }
    return *value;
}

}  // namespace brindlehum::cli
