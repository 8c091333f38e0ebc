#include "monitor/state/monitor_source.h"

#include <algorithm>

#include "mix/config/speaker_map.h"

namespace brindlehum {
namespace {

struct SourceEntry {
    std::string_view raw;
    std::string_view name;
    LayoutID layout;
    bool isFilm;
};
// In the order of the enumeration.
constexpr std::array<SourceEntry, 6> sources = {{{"l916", "9.1.6 (SMPTE)", LayoutID::l916, false},
                                                 {"l714", "7.1.4 (SMPTE)", LayoutID::l714, false},
                                                 {"l714film", "7.1.4 (Pro Tools film)", LayoutID::l714, true},
                                                 {"l51", "5.1 (SMPTE)", LayoutID::l51, false},
                                                 {"l51film", "5.1 (film)", LayoutID::l51, true},
                                                 {"stereo", "Stereo", LayoutID::stereo, false}}};

struct ModeEntry {
    std::string_view raw;
    std::string_view name;
};
constexpr std::array<ModeEntry, 5> modes = {
    {{"full", "Full"}, {"l714", "7.1.4"}, {"l51", "5.1"}, {"stereo", "2.0"}, {"mono", "Mono"}}};

const SourceEntry& entry(MonitorSource source) {
    return sources[size_t(source)];
}

template <typename Enum, typename Table>
std::optional<Enum> fromRaw(const Table& table, std::string_view raw) {
    const auto found = std::ranges::find_if(table, [raw](const auto& each) { return each.raw == raw; });
    return found == table.end() ? std::nullopt : std::optional(Enum(found - table.begin()));
}

}  // namespace

std::string_view rawValue(MonitorSource source) {
    return entry(source).raw;
}

std::optional<MonitorSource> monitorSourceFromRaw(std::string_view raw) {
    return fromRaw<MonitorSource>(sources, raw);
}

std::string_view displayName(MonitorSource source) {
    return entry(source).name;
}

const SpeakerList& channels(MonitorSource source) {
    const auto& [raw, name, layout, isFilm] = entry(source);
    return isFilm ? *filmOrder(layout) : speakers(layout);
}

std::vector<std::string> positions(MonitorSource source) {
    return SpeakerMap::positionsOf(channels(source));
}

std::string_view rawValue(MonitorMode mode) {
    return modes[size_t(mode)].raw;
}

std::optional<MonitorMode> monitorModeFromRaw(std::string_view raw) {
    return fromRaw<MonitorMode>(modes, raw);
}

std::string_view displayName(MonitorMode mode) {
    return modes[size_t(mode)].name;
}

const SpeakerList& foldList(MonitorMode mode, const SpeakerList& target) {
    static const SpeakerList centre = {SpeakerID::C};
    switch (mode) {
        case MonitorMode::l714:
            return speakers(LayoutID::l714);
        case MonitorMode::l51:
            return speakers(LayoutID::l51);
        case MonitorMode::stereo:
            return speakers(LayoutID::stereo);
        case MonitorMode::mono:
            return centre;
        case MonitorMode::full:
            break;
    }
    return target;
}

}  // namespace brindlehum
