// The gain matrices from a source's channels to speakers, to a stereo pair and to virtual speakers.
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "audio/speakers/source_format.h"
#include "spatial/ambisonics.h"
#include "spatial/listen_mode.h"
#include "spatial/matrix.h"

namespace brindlehum::MixBuilder {

// Folds any direction to a stereo pair: left and right gain.
std::pair<double, double> stereoGains(const Direction& direction);
// Index of the nearest speaker in the list, ignoring the LFE; the first of equally near ones; none without a candidate.
std::optional<int> nearest(const Direction& direction, const SpeakerList& in);

// One row per target speaker, one column per source channel. Drops channels that can't be routed. Pure, control side.
Matrix layoutMatrix(const SourceFormat& source, int channels, const SpeakerList& target, ListenMode listen,
                    const Rotation& rotation, bool monoToCenter);

struct BinauralMatrix {
    std::vector<Direction> dirs;  // one virtual speaker per row
    Matrix matrix;
};
// Returns an empty matrix for a discrete source.
BinauralMatrix binauralMatrix(const SourceFormat& source, int channels, const Rotation& rotation);

}  // namespace brindlehum::MixBuilder
