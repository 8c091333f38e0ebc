// MonitorState: what the user has set on the monitor.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <set>

#include "monitor/state/monitor_source.h"
#include "upmix/upmix_params.h"

namespace brindlehum {

struct MonitorState {
    static constexpr double lowestDB = -60, highestDB = 12;  // of the volume

    MonitorSource source = MonitorSource::l916;
    int sourceOffset = 0;  // channel of the input at which the bus begins, from 0
    MonitorMode mode = MonitorMode::full;
    double volumeDB = 0;
    bool dim = false;  // 20 dB lower
    bool mute = false;
    double heightTrimDB = 0;  // of the speakers above 20 degrees
    std::set<SpeakerID> solo;
    std::set<SpeakerID> muted;
    UpmixSettings upmix;
    // On headphones a bus of more than two channels is heard from its speakers' places; with this, as its fold-down to
    // left and right.
    bool headphonesFold = false;

    bool operator==(const MonitorState&) const = default;
};

// JSON objects with the field names as keys and enumerations by raw value. Reading never fails: a missing or unreadable
// key keeps its initial value.
void to_json(nlohmann::json& json, const MonitorState& state);
void from_json(const nlohmann::json& json, MonitorState& state);

}  // namespace brindlehum
