// MixConfig: how a source reaches the outputs, as a plain value of the control side.
#pragma once

#include <optional>
#include <vector>

#include "audio/speakers/speakers.h"
#include "upmix/upmix_params.h"

namespace brindlehum {

// The render side reads the flat record that RenderConfig makes of this value.
struct MixConfig {
    int inChannels = 0;         // planes that the matrix reads: the source's, or the upmix's outputs
    int rows = 0;               // device channels, or virtual speakers
    std::vector<float> matrix;  // rows x inChannels linear gains, row-major
    bool toBinaural = false;    // rows are virtual speakers; otherwise device channels
    int binLeft = 0;            // device channels of the two ears, from 0
    int binRight = 1;
    std::vector<Direction> virtualDirections;  // one per row when toBinaural, else empty
    std::optional<UpmixRequest> upmix;         // runs before the matrix
    int upmixOffset = 0;                       // first source plane that feeds the upmix
    bool operator==(const MixConfig&) const = default;
};

}  // namespace brindlehum
