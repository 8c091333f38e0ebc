// Parses the values that follow a word, strictly: UsageError names the word and the value.
#pragma once

#include <string>

namespace brindlehum::cli {

double numberAfter(const std::string& word, const std::string& text, double least, double most);
int wholeNumberAfter(const std::string& word, const std::string& text, int least, int most);
[[noreturn]] void refuse(const std::string& word, const std::string& text);

}  // namespace brindlehum::cli
