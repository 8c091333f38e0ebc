// Reads from a frame source, checked against the whole signal.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "audio/stream/frame_source.h"
#include "support/audio_files.h"

namespace brindlehum::test {

// Reads into planes filled with rubbish beforehand; they keep it behind what was read.
inline Planes read(FrameSource& source, int planeCount, int64_t position, int frames, int& got) {
    Planes out(size_t(planeCount), std::vector<float>(size_t(frames), 99.0F));
    std::vector<float*> planes;
    for (auto& plane : out) { planes.push_back(plane.data()); }
    got = source.read(planes.data(), planeCount, position, frames);
    return out;
}

inline void expectRead(FrameSource& source, const Planes& whole, int planeCount, int64_t position, int frames) {
    int got = -1;
    const Planes out = read(source, planeCount, position, frames, got);
    const auto length = int64_t(whole[0].size());
    ASSERT_EQ(got, position < 0 ? 0 : std::clamp<int64_t>(length - position, 0, frames)) << position << ' ' << frames;
    for (size_t c = 0; c < out.size(); ++c) {
        for (size_t i = 0; i < out[c].size(); ++i) {
            const float wanted = int(i) >= got ? 99.0F : c < whole.size() ? whole[c][size_t(position) + i] : 0.0F;
            ASSERT_NEAR(out[c][i], wanted, 1e-6)
                << "plane " << c << " of " << planeCount << ", frame " << position + int64_t(i);
        }
    }
}

}  // namespace brindlehum::test
