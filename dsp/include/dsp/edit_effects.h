// The editor's one-click effects: exact formulas without parameters.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "dsp/edit_ops.h"

namespace brindlehum::EditOps {

// Channel indices; none means all.
using Lanes = std::optional<std::vector<int>>;

struct Effect {
    const char* id;     // the stable key
    const char* name;   // in menus
    const char* blurb;  // in plain words
    // Works in place on the same range of several channels, all equally long and not empty. `sr` in Hz.
    void (*process)(std::span<const std::span<float>> channels, double sr);
    // A stereo effect works on the first two channels, whatever the lanes, and does nothing to mono.
    bool stereo = false;

    // Changes start ..< end in the lanes. Indices beyond the channels are ignored.
    void apply(Channels& channels, double sr, int64_t start, int64_t end, const Lanes& lanes = {}) const;
    // The same on a document: copies the range of the lanes that it changes, and shares all else.
    Sound apply(const Sound& sound, double sr, int64_t start, int64_t end, const Lanes& lanes = {}) const;

private:
    std::vector<int> touched(int channels, const Lanes& lanes) const;
};

// In the order of menus.
std::span<const Effect> effects();
// Null for an unknown id.
const Effect* effect(std::string_view id);

}  // namespace brindlehum::EditOps
