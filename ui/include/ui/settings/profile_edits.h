// ProfileEdits: every change that the settings window makes to output profiles, as pure functions.
#pragma once

#include <cstddef>
#include <vector>

#include "platform/audio_system.h"
#include "settings/app_settings.h"

namespace brindlehum::ProfileEdits {

inline constexpr double minTrimDB = -24;
inline constexpr double maxTrimDB = 12;
inline constexpr double trimStepDB = 0.5;
inline constexpr int offChannel = -1;

// A speaker past the end of a list has its own position as output, and no trim.
int outputOf(const OutputProfile& profile, size_t speaker);
double trimOf(const OutputProfile& profile, size_t speaker);
// Writing past the end first fills the list up to `speaker` with the values above. A profile that follows the
// `positions` of its device keeps their map and stops following them.
void setOutput(OutputProfile& profile, size_t speaker, int channel, const std::vector<std::string>& positions);
void setTrim(OutputProfile& profile, size_t speaker, double db);  // clamped to the range of the steppers

// A new layout follows the positions, with sequential outputs and no trims; the present one changes nothing.
void setLayout(OutputProfile& profile, LayoutID layout);
void setSequential(OutputProfile& profile);

// "Out 5 · RL"; without the position where the device states none, with a note past the device's last channel.
std::string channelName(int channel, const AudioOutputDevice& device);
// The number of numbered rows of a channel picker: enough for the device and for the stored channel.
int pickerRows(int channelCount, int current);

// Null if there is no such profile.
OutputProfile* find(AppSettings& settings, const UUID& id);
const OutputProfile* find(const AppSettings& settings, const UUID& id);
// Appends a new output and returns its id.
UUID append(AppSettings& settings);
// Keeps the last profile.
void remove(AppSettings& settings, const UUID& id);

}  // namespace brindlehum::ProfileEdits
