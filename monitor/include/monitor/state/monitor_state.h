// MonitorState: what the user has set on the monitor.
#pragma once

#include <map>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <set>

#include "monitor/state/monitor_source.h"
#include "upmix/upmix_params.h"

namespace brindlehum {

// How a speaker is matched to the others, behind the matrix.
struct SpeakerAlignment {
    static constexpr double longestMs = 100;

    double delayMs = 0;
    bool inverted = false;  // polarity
    bool operator==(const SpeakerAlignment&) const = default;
};

// What a sound level meter at the listener's place read.
struct ReferenceLevel {
    double volumeDB = 0;   // of the monitor, at
    double levelSPL = 79;  // dB SPL
    bool operator==(const ReferenceLevel&) const = default;
};

// What is listened to for a moment, beside the mode: the sum or the difference of the 2.0 fold-down, at half its gain,
// on L and on R.
enum class MonitorCheck : uint8_t { none, monoSum, side };

struct MonitorState {
    static constexpr double lowestDB = -60, highestDB = 12;  // of the volume
    static constexpr double lowestTrimDB = -12, highestTrimDB = 6;

    MonitorSource source = MonitorSource::l916;
    int sourceOffset = 0;  // channel of the input at which the bus begins, from 0
    MonitorMode mode = MonitorMode::full;
    double volumeDB = 0;
    bool dim = false;  // lower by
    double dimDB = -20;
    bool mute = false;
    double heightTrimDB = 0;  // of the speakers above 20 degrees
    std::set<SpeakerID> solo;
    std::set<SpeakerID> muted;
    UpmixSettings upmix;
    // On headphones a bus of more than two channels is heard from its speakers' places; with this, as its fold-down to
    // left and right.
    bool headphonesFold = false;
    std::map<SpeakerID, SpeakerAlignment> alignment;  // of those that aren't off
    std::optional<ReferenceLevel> reference;
    MonitorCheck check = MonitorCheck::none;  // never stored

    // What the volume and dim make together.
    double levelDB() const { return volumeDB + (dim ? dimDB : 0); }
    // dB SPL of the reference signal at the present level; none without a reference.
    std::optional<double> levelSPL() const;
    bool operator==(const MonitorState&) const = default;
};

// JSON objects with the field names as keys and enumerations by raw value. Reading never fails: a missing or unreadable
// key keeps its initial value, and numbers are brought into their ranges.
void to_json(nlohmann::json& json, const MonitorState& state);
void from_json(const nlohmann::json& json, MonitorState& state);

}  // namespace brindlehum
