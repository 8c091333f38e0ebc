// ListenMode: how a stereo file is monitored; each mode is a 2 x 2 matrix.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace brindlehum {

enum class ListenMode : uint8_t { normal, mono, left, right, midSide };
inline constexpr std::array<ListenMode, 5> allListenModes = {ListenMode::normal, ListenMode::mono, ListenMode::left,
                                                             ListenMode::right, ListenMode::midSide};

std::string_view rawValue(ListenMode mode);
std::string_view displayName(ListenMode mode);  // "Mono sum"
std::optional<ListenMode> listenModeFromRaw(std::string_view raw);
// Rows are the left and right output, columns the left and right input.
std::array<std::array<double, 2>, 2> matrix(ListenMode mode);

}  // namespace brindlehum
