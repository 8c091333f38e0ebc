// MonitorSource: in which channel order a bus arrives.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "audio/speakers/speakers.h"

namespace brindlehum {

enum class MonitorSource : uint8_t { l916, l714, l714film, l51, l51film, stereo };
inline constexpr std::array<MonitorSource, 6> allMonitorSources = {MonitorSource::l916,     MonitorSource::l714,
                                                                   MonitorSource::l714film, MonitorSource::l51,
                                                                   MonitorSource::l51film,  MonitorSource::stereo};

std::string_view rawValue(MonitorSource source);
std::optional<MonitorSource> monitorSourceFromRaw(std::string_view raw);
std::string_view displayName(MonitorSource source);  // "7.1.4 (Pro Tools film)"
// The channels in the order in which they arrive.
const SpeakerList& channels(MonitorSource source);
// What a device that carries such a bus calls its channels, in the sound server's words, in the order of channels().
std::vector<std::string> positions(MonitorSource source);

// To which speakers the mix is reduced before it goes to the room.
enum class MonitorMode : uint8_t { full, l714, l51, stereo, mono };
inline constexpr std::array<MonitorMode, 5> allMonitorModes = {MonitorMode::full, MonitorMode::l714, MonitorMode::l51,
                                                               MonitorMode::stereo, MonitorMode::mono};

std::string_view rawValue(MonitorMode mode);
std::optional<MonitorMode> monitorModeFromRaw(std::string_view raw);
std::string_view displayName(MonitorMode mode);  // "2.0"
// `target` in full mode, which reduces nothing.
const SpeakerList& foldList(MonitorMode mode, const SpeakerList& target);

}  // namespace brindlehum
