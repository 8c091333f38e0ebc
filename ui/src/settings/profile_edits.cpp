// The rules of profile edits.
#include "ui/settings/profile_edits.h"

#include <QCoreApplication>
#include <algorithm>
#include <numeric>
#include <utility>

#include "mix/config/speaker_map.h"

namespace brindlehum::ProfileEdits {

int outputOf(const OutputProfile& profile, size_t speaker) {
    return speaker < profile.outputs.size() ? profile.outputs[speaker] : int(speaker);
}

double trimOf(const OutputProfile& profile, size_t speaker) {
    return speaker < profile.trimsDB.size() ? profile.trimsDB[speaker] : 0;
}

void setOutput(OutputProfile& profile, size_t speaker, int channel, const std::vector<std::string>& positions) {
    if (std::exchange(profile.followsPositions, false)) {
        if (auto map = SpeakerMap::byPosition(profile.layout, positions)) { profile.outputs = std::move(*map); }
    }
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
    profile.followsPositions = true;
    profile.trimsDB.assign(speakers(layout).size(), 0);
}

void setSequential(OutputProfile& profile) {
    profile.outputs.resize(speakers(profile.layout).size());
    std::iota(profile.outputs.begin(), profile.outputs.end(), 0);
    profile.followsPositions = false;
}

std::string channelName(int channel, const AudioOutputDevice& device) {
    if (channel >= device.outputChannels) {
        return QCoreApplication::translate("ProfileEdits", "Out %1 (not there)").arg(channel + 1).toStdString();
    }
    const std::string number = QCoreApplication::translate("ProfileEdits", "Out %1").arg(channel + 1).toStdString();
    const bool named = size_t(channel) < device.positions.size() && !device.positions[size_t(channel)].empty();
    return named ? number + " · " + device.positions[size_t(channel)] : number;
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
