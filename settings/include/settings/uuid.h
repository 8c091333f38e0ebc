// UUID: a random identity (RFC 4122, version 4) with its upper-case text form.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>

namespace brindlehum {

struct UUID {
    std::array<uint8_t, 16> bytes{};
    auto operator<=>(const UUID&) const = default;

    static UUID random();
    // Accepts upper and lower case; none for anything but the 36-character form.
    static std::optional<UUID> parse(const std::string& text);
    std::string string() const;
};

}  // namespace brindlehum
