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

// Past the end of a list a speaker has its own position as output and no trim.
int outputOf(const OutputProfile& profile, size_t speaker);
double trimOf(const OutputProfile& profile, size_t speaker);
// Writing past the end fills the list up to `speaker` with what was read there so far, and no further.
void setOutput(OutputProfile& profile, size_t speaker, int channel);
void setTrim(OutputProfile& profile, size_t speaker, double db);  // clamped to the range of the steppers

// A layout other than the present one starts over: sequential outputs and no trims.
void setLayout(OutputProfile& profile, LayoutID layout);
void setSequential(OutputProfile& profile);

// Output channels of the profile's device, or of the default device when it names none or one that isn't there.
int channelCount(const OutputProfile& profile, const std::vector<AudioOutputDevice>& devices, int defaultChannels);
// Numbered rows of a channel picker: a stored channel beyond the device stays visible.
int pickerRows(int channelCount, int current);

// Null when there is no such profile.
OutputProfile* find(AppSettings& settings, const UUID& id);
const OutputProfile* find(const AppSettings& settings, const UUID& id);
// Appends a new output and gives its id.
UUID append(AppSettings& settings);
// Does nothing for the last profile that is left.
void remove(AppSettings& settings, const UUID& id);

}  // namespace brindlehum::ProfileEdits
