// MonitorMatrix: turns all that is set on the monitor into the one matrix from the bus to the room.
#pragma once

#include "mix/config/mix_config.h"
#include "monitor/state/monitor_state.h"
#include "settings/output_profile.h"
#include "spatial/matrix.h"

// Pure; any thread but the render thread.
namespace brindlehum::MonitorMatrix {

// The rows of a * b. Empty when either is.
Matrix multiply(const Matrix& a, const Matrix& b);

// The speakers that the bus is heard on: the profile's, or on headphones the bus's own, around the listener, or L and
// R.
SpeakerList room(const MonitorState& state, const OutputProfile& profile);
// Whether an upmix could fill speakers of the profile that the bus lacks. Never on headphones.
bool upmixApplies(MonitorSource source, const OutputProfile& profile);
// The gains from the channels of the bus, or of the upmix's room where one runs, to room(): one row for each speaker.
// Without the trims of the profile.
Matrix gains(const MonitorState& state, const OutputProfile& profile);
// The same on a device. `inputChannels` counts those of the input, of which the bus may be a part, and `deviceChannels`
// the outputs; columns and rows beyond them are dropped.
MixConfig build(const MonitorState& state, int inputChannels, const OutputProfile& profile, int deviceChannels);

// The speakers that nothing is sent to in this mode, whatever is soloed or muted.
std::set<SpeakerID> unreached(MonitorState state, const OutputProfile& profile);
// What stands behind the matrix, for each channel of the device. Off on headphones.
std::vector<SpeakerAlignment> alignment(const MonitorState& state, const OutputProfile& profile, int deviceChannels);

}  // namespace brindlehum::MonitorMatrix
