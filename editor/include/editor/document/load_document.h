// Loads a whole sound file for the editor.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>

#include "audio/probe/audio_file_info.h"
#include "audio/write/wav_form.h"
#include "dsp/sound.h"

namespace brindlehum {

// The longest document, in seconds; a file must be shorter.
inline constexpr double longestDocument = 1800;

struct LoadedDocument {
    AudioFileInfo info;
    Sound sound;
    int64_t notNumbers = 0;  // samples that were infinite or no number, and became 0
    WavNotes notes = {};     // left to the caller
};

// Blocking I/O on the caller's thread. `progress` gets the share read so far, 0 to 1, after each block. Throws Error:
// tooLong for a file of 30 minutes or more, tooLargeToLoad for one that would fill more than half of the memory or
// four fifths of what is left of it, and
// the reader's own. Returns what was read so far once `stop` returns true.
// `shown` gets what can be looked at meanwhile, twenty times a second: the whole blocks so far, of `total` frames.
using ShowLoading = std::function<void(const AudioFileInfo& info, Sound soFar, int64_t total)>;
LoadedDocument loadDocument(const std::filesystem::path& path, const std::function<void(double)>& progress,
                            const std::function<bool()>& stop, const ShowLoading& shown = {});

}  // namespace brindlehum
