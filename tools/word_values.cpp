// Parses the values that follow a word.
#include "word_values.h"

#include <charconv>
#include <cmath>

#include "command.h"

namespace brindlehum::cli {

void refuse(const std::string& word, const std::string& text) {
    throw UsageError(word + " can't be \"" + text + "\"");
}

double numberAfter(const std::string& word, const std::string& text, double least, double most) {
    double value = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (fault != std::errc() || end != text.data() + text.size() || !(value >= least && value <= most)) {
        refuse(word, text);
    }
    return value;
}

int wholeNumberAfter(const std::string& word, const std::string& text, int least, int most) {
    const double value = numberAfter(word, text, least, most);
    if (value != std::floor(value)) { refuse(word, text); }
    return int(value);
}

}  // namespace brindlehum::cli
