// Room: a target's speakers with what the planners ask of them.
#pragma once

#include <optional>
#include <vector>

#include "audio/speakers/speakers.h"
#include "upmix/upmix_params.h"

namespace brindlehum::UpmixPlanner {

struct Room {
    explicit Room(const SpeakerList& list);

    const SpeakerList& speakers;
    std::vector<Direction> dirs;
    int size() const { return int(speakers.size()); }
    std::optional<int> find(SpeakerID speaker) const;
};

// The first index of a speaker.
std::optional<int> indexOf(const SpeakerList& list, SpeakerID speaker);

// The level of the ambience in a speaker, in dB; none for one that is silenced by being at -40 dB or below.
std::optional<double> ambienceLevel(SpeakerID speaker, const UpmixParams& params);

}  // namespace brindlehum::UpmixPlanner
