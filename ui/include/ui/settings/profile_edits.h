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
// Writing past the end first fills the list up to `speaker` with the values above.
void setOutput(OutputProfile& profile, size_t speaker, int channel);
void setTrim(OutputProfile& profile, size_t speaker, double db);  // clamped to the range of the steppers

// A new layout starts with sequential outputs and no trims; the present one changes nothing.
void setLayout(OutputProfile& profile, LayoutID layout);
void setSequential(OutputProfile& profile);

// Output channels of the profile's device, or of the default device if the profile names none or a missing one.
int channelCount(const OutputProfile& profile, const std::vector<AudioOutputDevice>& devices, int defaultChannels);
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
