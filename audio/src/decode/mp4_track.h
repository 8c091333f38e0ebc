// Reads layout and length of one sound track from the boxes of an MP4 or QuickTime file.
#pragma once

#include <cstdint>
#include <optional>

#include "audio/speakers/channel_layout.h"
#include "base/file_handle.h"

namespace brindlehum {

// The `chan` box of the track's sample description. None without the track or the box.
std::optional<ChannelLayout> mp4Layout(const FileHandle& file, int trackID);

// Length of the track at `rate` (Hz) after its edit list. The list counts in the movie's time scale, which is often
// only milliseconds: where it agrees with the media's own duration to within that step, returns the media's own. None
// when the boxes don't state it (fragmented files, lists of several edits).
std::optional<int64_t> mp4Frames(const FileHandle& file, int trackID, int rate);

}  // namespace brindlehum
