// Cutting text at separators.
#pragma once

#include <string_view>
#include <vector>

namespace brindlehum {

// The parts between any of the separators, empty ones included: one more than there are separators.
inline std::vector<std::string_view> split(std::string_view text, std::string_view separators) {
    std::vector<std::string_view> parts;
    for (;;) {
        const size_t end = text.find_first_of(separators);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) { return parts; }
        text.remove_prefix(end + 1);
    }
}

}  // namespace brindlehum
