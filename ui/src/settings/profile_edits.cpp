// The rules of profile edits.
#include "ui/settings/profile_edits.h"

#include <algorithm>
#include <numeric>

namespace brindlehum::ProfileEdits {

int outputOf(const OutputProfile& profile, size_t speaker) {
    return speaker < profile.outputs.size() ? profile.outputs[speaker] : int(speaker);
}

double trimOf(const OutputProfile& profile, size_t speaker) {
    return speaker < profile.trimsDB.size() ? profile.trimsDB[speaker] : 0;
}

void setOutput(OutputProfile& profile, size_t speaker, int channel) {
    auto& outputs = profile.outputs;
    while (outputs.size() <= speaker) { outputs.push_back(int(outputs.size())); }
    outputs[speaker] = channel;
}

void setTrim(OutputProfile& profile, size_t speaker, double db) {
    if (profile.trimsDB.size() <= speaker) { profile.trimsDB.resize(speaker + 1, 0); }
    profile.trimsDB[speaker] = std::clamp(db, minTrimDB, maxTrimDB);
}

void setLayout(OutputProfile& profile, LayoutID layout) {
    if (profile.layout == layout) { return; }
    profile.layout = layout;
    setSequential(profile);
    profile.trimsDB.assign(speakers(layout).size(), 0);
}

void setSequential(OutputProfile& profile) {
    profile.outputs.resize(speakers(profile.layout).size());
    std::iota(profile.outputs.begin(), profile.outputs.end(), 0);
}

int channelCount(const OutputProfile& profile, const std::vector<AudioOutputDevice>& devices, int defaultChannels) {
    if (!profile.deviceUID) { return defaultChannels; }
    const auto found = std::ranges::find(devices, *profile.deviceUID, &AudioOutputDevice::uid);
    return found == devices.end() ? defaultChannels : found->outputChannels;
}

int pickerRows(int channelCount, int current) {
    return std::max(channelCount, current + 1);
}

OutputProfile* find(AppSettings& settings, const UUID& id) {
    const auto found = std::ranges::find(settings.profiles, id, &OutputProfile::id);
    return found == settings.profiles.end() ? nullptr : &*found;
}

const OutputProfile* find(const AppSettings& settings, const UUID& id) {
    return find(const_cast<AppSettings&>(settings), id);
}

UUID append(AppSettings& settings) {
    return settings.profiles.emplace_back(OutputProfile::newOutput()).id;
}

void remove(AppSettings& settings, const UUID& id) {
    if (settings.profiles.size() < 2) { return; }
    std::erase_if(settings.profiles, [&](const OutputProfile& profile) { return profile.id == id; });
}

}  // namespace brindlehum::ProfileEdits
