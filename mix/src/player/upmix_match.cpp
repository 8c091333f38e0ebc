// Upmix and fold-down, rendered offline and weighted.
#include "mix/player/upmix_match.h"

#include <algorithm>
#include <cmath>

#include "analysis/loudness/loudness.h"
#include "mix/config/mix_builder.h"
#include "mix/render/offline_render.h"

namespace brindlehum {
namespace {

constexpr int blockFrames = 4096;

// The K weighting of one channel: two second-order sections, transposed direct form II.
class WeightedPower {
public:
    explicit WeightedPower(double sampleRate)
        : filters_{Loudness::kWeighting(sampleRate).first, Loudness::kWeighting(sampleRate).second} {}
    void add(const float* samples, int frames) {
        for (int i = 0; i < frames; ++i) {
            double x = double(samples[i]);
            for (size_t f = 0; f < 2; ++f) {
                const auto& q = filters_[f];
                auto& [z1, z2] = memory_[f];
                const double y = q.b0 * x + z1;
                z1 = q.b1 * x - q.a1 * y + z2;
                z2 = q.b2 * x - q.a2 * y;
                x = y;
            }
            sum_ += x * x;
        }
    }
    double sum() const { return sum_; }

private:
    Loudness::Biquad filters_[2];
    std::pair<double, double> memory_[2];
    double sum_ = 0;
};

// Each speaker on the device channel of its number.
OutputProfile spreadOut(OutputProfile profile) {
    profile.trimsDB.clear();
    profile.followsPositions = false;
    profile.headphoneLeft = 0;
    profile.headphoneRight = 1;
    for (size_t i = 0; i < profile.outputs.size(); ++i) {
        if (profile.outputs[i] >= 0) { profile.outputs[i] = int(i); }
    }
    return profile;
}

struct Measured {
    double power = 0;
    double peak = 0;
};

Measured measured(const MixConfig& config, std::shared_ptr<StreamReader> reader, const SpeakerList& speakers,
                  double sampleRate, const std::function<bool()>& stop) {
    OfflineRender render(config, std::move(reader), sampleRate, int(speakers.size()), blockFrames, 1);
    std::vector<WeightedPower> channels(speakers.size(), WeightedPower(sampleRate));
    Measured result;
    while (const int frames = stop() ? 0 : render.next()) {
        for (size_t c = 0; c < channels.size(); ++c) {
            const float* const plane = render.planes()[c];
            channels[c].add(plane, frames);
            for (int i = 0; i < frames; ++i) { result.peak = std::max(result.peak, std::abs(double(plane[i]))); }
        }
    }
    const auto weights = Loudness::weights(SourceFormat::speakers(speakers), int(speakers.size()));
    for (size_t c = 0; c < channels.size(); ++c) { result.power += weights[c] * channels[c].sum(); }
    return result;
}

}  // namespace

UpmixLoudness upmixLevels(const ListeningSnapshot& snapshot, const std::function<std::unique_ptr<FrameSource>()>& open,
                          FrameRange part, double sampleRate, const std::function<bool()>& stop) {
    ListeningSnapshot heard = snapshot;
    heard.profile = spreadOut(snapshot.profile);
    const bool headphones = heard.profile.kind == OutputProfile::Kind::headphones;
    const SpeakerList& list = speakers(headphones ? LayoutID::stereo : heard.profile.layout);
    heard.deviceChannels = int(list.size());
    const auto measure = [&](bool plain) {
        heard.comparison = UpmixComparison{plain, 0};
        auto reader = std::make_shared<StreamReader>(open(), sampleRate, part.lower, part.upper, false, int64_t(0),
                                                     int64_t(0), StreamReader::Use::lockstep);
        return measured(listeningMix(heard).config, std::move(reader), list, sampleRate, stop);
    };
    const auto db = [](double power) { return 10 * std::log10(power); };
    const Measured upmix = measure(false);
    const Measured plain = measure(true);
    return {db(upmix.power), db(plain.power), plain.peak};
}

MatchedGains matchedGains(const UpmixLoudness& levels, double volumeDb) {
    const double louder = levels.upmixDb - levels.plainDb;
    if (!std::isfinite(louder)) { return {}; }
    const double headroom = std::max(-20 * std::log10(levels.plainPeak) - volumeDb, 0.0);
    const double plain = std::min(louder, headroom);
    return {plain - louder, plain};
}

}  // namespace brindlehum
