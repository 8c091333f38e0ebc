// Exporter: writes what is heard of a sound into a WAV file of its own, as fast as the processor allows.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>

#include "audio/probe/audio_file_info.h"
#include "audio/write/wav_form.h"
#include "dsp/sound.h"
#include "mix/config/frame_range.h"
#include "mix/export/drag_export.h"
#include "spatial/ambisonics.h"
#include "spatial/listen_mode.h"
#include "upmix/upmix_params.h"

namespace brindlehum::Exporter {

// A sound in memory that was made from a file.
struct Edited {
    Sound sound;
    std::function<WavNotes()> notes;  // of the exported part; asked on the thread that exports
    uint64_t state = 0;               // tells one state of a sound from all others
    bool operator==(const Edited& other) const { return state == other.state; }
};

struct Request {
    AudioFileInfo info;
    SourceFormat source = SourceFormat::stereo();  // how the file's channels are understood
    std::optional<FrameRange> range = {};          // none: all of it
    DragExport mode = {};
    Rotation rotation = {};                  // of an Ambisonic source
    ListenMode listen = ListenMode::normal;  // of a stereo source
    bool monoToCenter = true;
    std::filesystem::path folder;  // the file comes to lie in its subfolder of the day
    UpmixParams upmix = {};
    std::string upmixName = {};  // of the preset, for names
    // The part is meant to be repeated: its filters and its upmix start as they end.
    bool loop = false;
    bool asFloat = false;  // 32-bit float samples instead of 24-bit integers
    // In place of the file's own sound; `info` has its length and rate.
    std::optional<Edited> edited = {};

    bool operator==(const Request&) const = default;
};

struct Result {
    std::filesystem::path url;
    std::string label;  // of the channels: "7.1.4 (WAVE order)"
    int channels = 0;
    int64_t frames = 0;
    std::optional<double> peak;  // largest magnitude before any clipping, 1 is full scale; none for an untouched file
    int64_t clipped = 0;         // samples that were beyond full scale and were cut to it
};

// What the new file says of itself besides its description; it takes that along from its source. Mustn't throw.
using Carry = std::function<WavNotes(const std::filesystem::path& source, const FrameRange& range)>;

// What a caller may watch, stop and add; all is used on the thread that exports.
struct Watch {
    std::function<void(double done)> progress = {};  // 0 to 1
    std::stop_token stop = {};
    Carry carry = {};
    // Asked once the file is written and before it gets its name; may wait. False: it is taken back as if stopped.
    std::function<bool()> mayPlace = {};
};

// The file of the request: the source itself for the whole original, otherwise a new file in `folder`/yyyy-MM-dd under
// its name of ExportName, which appears there complete or not at all. Never touches a file that is there already: the
// same content is used again, other content makes the new name end in " 2" and so on. None when stopped. Blocking; any
// thread but the render thread. Throws Error: noBinaural, noUpmix, wavSizeLimit, or with the reason in its text.
std::optional<Result> make(const Request& request, const Watch& watch = {});

// "peaks 2.1 dB above full scale were clipped"; empty when nothing was.
std::string remark(const Result& result);

}  // namespace brindlehum::Exporter
