// The rule for Space in the file manager: whether it is ours, and what it does. Pure.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace brindlehum {

struct SpaceState {
    bool active = false;                         // the file manager is in front
    bool finderPanel = false;                    // as set
    bool spacePlays = false;                     // as set
    bool editing = false;                        // the user types in the file manager
    std::optional<std::filesystem::path> audio;  // selected there
};

enum class SpaceAction : uint8_t { pass, nothing, toggle, load };  // load: and play

inline bool takesSpace(const SpaceState& state) {
    return state.active && state.finderPanel && state.spacePlays && !state.editing && state.audio.has_value();
}

// `loaded`: the player's file.
inline SpaceAction spaceAction(const SpaceState& state, bool isRepeat,
                               const std::optional<std::filesystem::path>& loaded) {
    if (!takesSpace(state)) { return SpaceAction::pass; }
    if (isRepeat) { return SpaceAction::nothing; }
    return loaded == state.audio ? SpaceAction::toggle : SpaceAction::load;
}

}  // namespace brindlehum
