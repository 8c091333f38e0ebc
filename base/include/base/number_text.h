// Numbers as text and back, the same in every locale.
#pragma once

#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

namespace brindlehum {

// With `decimals` digits after the point, as "%.1f" in the C locale.
inline std::string fixed(double value, int decimals) {
    char buffer[400];  // the longest double has 309 digits before the point
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals).ptr;
    return {buffer, end};
}

// "48 kHz", "44.1 kHz".
inline std::string kilohertzText(double hertz) {
    const double khz = hertz / 1000;
    return fixed(khz, khz == std::floor(khz) ? 0 : 1) + " kHz";
}

// The number at the start of a text; 0 when there is none.
template <typename Number>
Number numberAtStart(std::string_view text) {
    Number value{};
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

}  // namespace brindlehum
