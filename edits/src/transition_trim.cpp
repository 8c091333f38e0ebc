// The trim of generated takes.
#include "edits/transition_trim.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace brindlehum {

std::vector<std::vector<float>> transitionTrim(const std::vector<std::vector<float>>& channels, double sr, bool intro,
                                               double length, double fade) {
    auto trimmed = channels;
    for (auto& samples : trimmed) {
        const int64_t kept = std::min(int64_t(samples.size()), int64_t(length * sr));
        const int64_t faded = std::min(kept, int64_t(fade * sr));
        if (intro) {
            samples.resize(size_t(kept));
        } else {
            samples.erase(samples.begin(), samples.end() - kept);
        }
        float* const ramp = samples.data() + (intro ? kept - faded : 0);
        for (int64_t i = 0; i < faded; ++i) {
            const double angle = double(i) / double(faded) * std::numbers::pi / 2;
            ramp[i] = float(ramp[i] * (intro ? std::cos(angle) : std::sin(angle)));
        }
    }
    return trimmed;
}

}  // namespace brindlehum
