// How the editor's document is heard: the player's mix, with solo and mute, and the metronome beside it.
#pragma once

#include <set>

#include "mix/player/listening_mix.h"

namespace brindlehum {

struct LaneSwitches {
    std::set<int> solo, mute;  // channels from 0
    bool isHeard(int channel) const { return !mute.contains(channel) && (solo.empty() || solo.contains(channel)); }
    bool operator==(const LaneSwitches&) const = default;
};

// The mix of a document. With `metronome` its last input channel is the click, which plays as a mono sound would, past
// solo and mute. Threads as for listeningMix.
ListeningMix editorMix(const ListeningSnapshot& snapshot, const LaneSwitches& lanes, bool metronome);

}  // namespace brindlehum
