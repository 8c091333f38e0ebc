// Numbers as text, the same in every locale.
#pragma once

#include <charconv>
#include <string>

namespace brindlehum {

// With `decimals` digits after the point, as "%.1f" in the C locale.
inline std::string fixed(double value, int decimals) {
    char buffer[400];  // the longest double has 309 digits before the point
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals).ptr;
    return {buffer, end};
}

}  // namespace brindlehum
