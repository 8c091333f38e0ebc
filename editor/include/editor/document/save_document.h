// Writes a document as a WAVE file.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "audio/probe/audio_file_info.h"
#include "audio/write/wav_form.h"
#include "editor/document/edit_history.h"

namespace brindlehum {

struct SavedSound {
    std::filesystem::path url;  // of the file that was opened
    AudioFileInfo info;
    double sampleRate = 0;  // Hz
    Content content;
    WavNotes notes = {};  // of the source, with its time of day
    WavSamples samples = WavSamples::pcm24Lossless;
};

struct SaveResult {
    bool isWritten = false;  // false: stopped, and nothing has changed
    std::string note;        // what the user must know: clipped peaks; begins with a separator, or is empty
};

// The dwChannelMask for a document of this source: 0 where its channels have no place in a mask.
uint32_t channelMask(const SourceFormat& source, int channels);

// Writes the samples beside the target and swaps them in; a file that is there keeps its owner and its permissions, and
// is refused while another program writes to it. The notes go along, with the cue points of the content; the time
// reference is moved to its first frame. `progress` gets the share written, 0 to 1, and returns
// false to stop. Blocking I/O; throws Error.
SaveResult saveDocument(const std::filesystem::path& path, const SavedSound& saved,
                        const std::function<bool(double)>& progress);

}  // namespace brindlehum
