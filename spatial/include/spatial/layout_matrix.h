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

// Fold of any direction to a stereo pair: left and right gain.
std::pair<double, double> stereoGains(const Direction& direction);
// Index of the nearest speaker of the list but the LFE; the first of equally near ones; none without a candidate.
std::optional<int> nearest(const Direction& direction, const SpeakerList& in);

// One row a target speaker, one column a source channel. Channels that can't be routed are dropped. Pure, control side.
Matrix layoutMatrix(const SourceFormat& source, int channels, const SpeakerList& target, ListenMode listen,
                    const Rotation& rotation, bool monoToCenter);

struct BinauralMatrix {
    std::vector<Direction> dirs;  // one virtual speaker a row
    Matrix matrix;
};
// Empty for a discrete source.
BinauralMatrix binauralMatrix(const SourceFormat& source, int channels, const Rotation& rotation);

}  // namespace brindlehum::MixBuilder
