// The names of channels, and the rules of what fits.
#include "mix/config/speaker_map.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace brindlehum::SpeakerMap {

namespace {

// What a device may call the channel of a speaker, the best name first.
std::vector<std::string_view> namesOf(SpeakerID speaker, bool isRear) {
    switch (speaker) {
        case SpeakerID::L:
            return {"FL"};
        case SpeakerID::R:
            return {"FR"};
        case SpeakerID::C:
            return {"FC"};
        case SpeakerID::LFE:
            return {"LFE"};
        case SpeakerID::Ls:
            // Without rears, the surrounds of a device may be called sides or rears.
            return isRear ? std::vector<std::string_view>{"SL"} : std::vector<std::string_view>{"SL", "RL"};
        case SpeakerID::Rs:
            return isRear ? std::vector<std::string_view>{"SR"} : std::vector<std::string_view>{"SR", "RR"};
        case SpeakerID::Lrs:
            return {"RL", "RLC"};
        case SpeakerID::Rrs:
            return {"RR", "RRC"};
        case SpeakerID::Lw:
            return {"FLW"};
        case SpeakerID::Rw:
            return {"FRW"};
        case SpeakerID::Ltf:
            return {"TFL", "FLH"};
        case SpeakerID::Rtf:
            return {"TFR", "FRH"};
        case SpeakerID::Ltm:
            return {"TSL"};
        case SpeakerID::Rtm:
            return {"TSR"};
        case SpeakerID::Ltr:
            return {"TRL"};
        case SpeakerID::Rtr:
            return {"TRR"};
        case SpeakerID::Lc:
            return {"FLC"};
        case SpeakerID::Rc:
            return {"FRC"};
        case SpeakerID::Cs:
            return {"RC"};
        case SpeakerID::Tc:
            return {"TC"};
    }
    return {};
}

std::optional<int> channelOf(SpeakerID speaker, bool isRear, const std::vector<std::string>& positions) {
    for (const auto name : namesOf(speaker, isRear)) {
        const auto found = std::ranges::find(positions, name);
        if (found != positions.end()) { return int(found - positions.begin()); }
    }
    return std::nullopt;
}

// The device channels that the profile sends to, without those that are off.
std::vector<int> usedChannels(const OutputProfile& profile, const std::vector<std::string>& positions) {
    std::vector<int> used = profile.kind == OutputProfile::Kind::headphones
                                ? std::vector{profile.headphoneLeft, profile.headphoneRight}
                                : outputs(profile, positions);
    std::erase_if(used, [](int channel) { return channel < 0; });
    return used;
}

std::string counted(int count, const std::string& one, const std::string& more) {
    return std::to_string(count) + " " + (count == 1 ? one : more);
}

}  // namespace

std::optional<std::vector<int>> byPosition(LayoutID layout, const std::vector<std::string>& positions) {
    const SpeakerList& list = speakers(layout);
    std::vector<int> map;
    int beyond = int(positions.size());
    for (const SpeakerID speaker : list) {
        const auto channel = channelOf(speaker, isRearLayout(list), positions);
        map.push_back(channel ? *channel : beyond++);
    }
    const bool namesNone = beyond == int(positions.size() + list.size());
    return namesNone ? std::nullopt : std::optional(map);
}

std::vector<std::string> positionsOf(const SpeakerList& speakers) {
    std::vector<std::string> positions;
    for (const SpeakerID speaker : speakers) {
        positions.emplace_back(namesOf(speaker, isRearLayout(speakers)).front());
    }
    return positions;
}

std::vector<int> outputs(const OutputProfile& profile, const std::vector<std::string>& positions) {
    if (profile.followsPositions) {
        if (auto map = byPosition(profile.layout, positions)) { return *map; }
    }
    std::vector<int> map = profile.outputs;
    const size_t count = speakers(profile.layout).size();
    while (map.size() < count) { map.push_back(int(map.size())); }
    map.resize(count);
    return map;
}

OutputProfile onDevice(OutputProfile profile, const std::vector<std::string>& positions) {
    profile.outputs = outputs(profile, positions);
    profile.followsPositions = false;
    return profile;
}

Fit fit(const OutputProfile& profile, const AudioOutputDevice& device) {
    const std::vector<int> used = usedChannels(profile, device.positions);
    const auto heard = std::ranges::count_if(used, [&](int channel) { return channel < device.outputChannels; });
    return {used.empty() ? 0 : std::ranges::max(used) + 1, int(used.size()), int(used.size()) - int(heard)};
}

const AudioOutputDevice* deviceOf(const OutputProfile& profile, const std::vector<AudioOutputDevice>& devices,
                                  std::optional<uint32_t> defaultDevice) {
    auto found = std::ranges::find_if(devices, [&](const auto& device) { return device.uid == profile.deviceUID; });
    if (found == devices.end()) {
        found = std::ranges::find_if(devices, [&](const auto& device) { return device.id == defaultDevice; });
    }
    return found == devices.end() ? nullptr : &*found;
}

const OutputProfile* fitting(const std::vector<OutputProfile>& profiles, const std::vector<AudioOutputDevice>& devices,
                             std::optional<uint32_t> defaultDevice) {
    const OutputProfile* best = nullptr;
    std::pair<int, int> bestRank;  // unheard, and the negative number of speakers
    for (const OutputProfile& profile : profiles) {
        const AudioOutputDevice* device = deviceOf(profile, devices, defaultDevice);
        if (profile.kind != OutputProfile::Kind::speakers || !device) { continue; }
        const Fit now = fit(profile, *device);
        const std::pair rank{now.unheard, -now.speakers};
        if (best && rank >= bestRank) { continue; }
        best = &profile;
        bestRank = rank;
    }
    return best;
}

std::string warning(const OutputProfile& profile, const AudioOutputDevice& device) {
    const Fit now = fit(profile, device);
    if (now.unheard == 0) { return {}; }
    const bool headphones = profile.kind == OutputProfile::Kind::headphones;
    const std::string silent =
        counted(now.unheard, headphones ? "side is" : "speaker is", headphones ? "sides are" : "speakers are");
    return profile.name + " needs " + counted(now.needed, "output", "outputs") + ", " + device.name + " has " +
           std::to_string(device.outputChannels) + ": " + silent + " not heard";
}

}  // namespace brindlehum::SpeakerMap
