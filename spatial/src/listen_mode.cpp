// The monitoring matrices of a stereo file.
#include "spatial/listen_mode.h"

namespace brindlehum {

std::string_view rawValue(ListenMode mode) {
    switch (mode) {
        case ListenMode::normal:
            return "normal";
        case ListenMode::mono:
            return "mono";
        case ListenMode::left:
            return "left";
        case ListenMode::right:
            return "right";
        case ListenMode::midSide:
            return "midSide";
    }
    return {};
}

std::string_view displayName(ListenMode mode) {
    switch (mode) {
        case ListenMode::normal:
            return "Stereo";
        case ListenMode::mono:
            return "Mono sum";
        case ListenMode::left:
            return "Left only";
        case ListenMode::right:
            return "Right only";
        case ListenMode::midSide:
            return "M/S decode";
    }
    return {};
}

std::optional<ListenMode> listenModeFromRaw(std::string_view raw) {
    for (const ListenMode mode : allListenModes) {
        if (rawValue(mode) == raw) { return mode; }
    }
    return std::nullopt;
}

std::array<std::array<double, 2>, 2> matrix(ListenMode mode) {
    switch (mode) {
        case ListenMode::normal:
            break;
        case ListenMode::mono:
            return {{{0.5, 0.5}, {0.5, 0.5}}};
        case ListenMode::left:
            return {{{1, 0}, {1, 0}}};
        case ListenMode::right:
            return {{{0, 1}, {0, 1}}};
        case ListenMode::midSide:
            return {{{0.7071, 0.7071}, {0.7071, -0.7071}}};
    }
    return {{{1, 0}, {0, 1}}};
}

}  // namespace brindlehum
