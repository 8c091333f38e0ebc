// How a sound is heard through a profile, as a pure function of a snapshot.
#pragma once

#include <optional>

#include "audio/speakers/source_format.h"
#include "mix/config/mix_config.h"
#include "settings/output_profile.h"
#include "spatial/ambisonics.h"
#include "spatial/listen_mode.h"

namespace brindlehum {

// The upmix beside the plain fold-down, made equally loud.
struct UpmixComparison {
    bool plain = false;  // the fold-down is heard
    double gainDb = 0;   // of what is heard
    bool operator==(const UpmixComparison&) const = default;
};

// Everything that a mix depends on.
struct ListeningSnapshot {
    SourceFormat source = SourceFormat::stereo();
    int channels = 2;  // of the file
    OutputProfile profile;
    int deviceChannels = 2;
    ListenMode listen = ListenMode::normal;  // for files of two channels
    Rotation rotation = {};                  // of a sound field
    bool monoToCenter = true;
    UpmixSettings upmix = {};      // where it applies, `listen` doesn't
    bool binauralMissing = false;  // no HRTF set was found for the device's rate
    std::optional<UpmixComparison> comparison = {};
    bool operator==(const ListeningSnapshot&) const = default;
};

struct ListeningMix {
    MixConfig config;
    bool standsIn = false;  // true: the stereo fold-down on both ears, because the binaural mix isn't available
};

// Any thread but the render thread, since a sound field on speakers costs an AllRAD build.
ListeningMix listeningMix(const ListeningSnapshot& snapshot);

}  // namespace brindlehum
