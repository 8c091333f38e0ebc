// Keeps the last blocks of 100 ms, and a histogram of all gating blocks in place of their list.
#include "analysis/loudness/live_loudness.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>

#include "dsp/signal.h"
#include "loudness/k_powers.h"

namespace brindlehum {
namespace {

constexpr double offset = -0.691;  // dB, of BS.1770
constexpr size_t shortBlocks = 30;
constexpr size_t gateBlocks = 4;
constexpr double relativeGate = -10;  // LU

double loudnessOf(double power) {
    return power > 0 ? std::max(offset + 10 * std::log10(power), LoudnessResult::floor) : LoudnessResult::floor;
}

// Gating blocks by loudness. A class holds the sum of its powers, so only the gate itself is rounded, to 0.01 LU.
class Gates {
public:
    void add(double power) {
        const double above = offset + 10 * std::log10(std::max(power, 1e-30)) - LoudnessResult::floor;
        if (!(above > 0)) { return; }
        Class& to = classes_[std::min(size_t(above * perUnit), classes_.size() - 1)];
        ++to.count;
        to.power += power;
    }
    void clear() { classes_.fill({}); }
    double integrated() const {
        const double ungated = meanFrom(0);
        if (ungated <= 0) { return LoudnessResult::floor; }
        const double gate = loudnessOf(ungated) + relativeGate - LoudnessResult::floor;
        return loudnessOf(meanFrom(size_t(std::lround(std::max(gate, 0.0) * perUnit))));
    }

private:
    static constexpr int perUnit = 100;
    struct Class {
        int64_t count = 0;
        double power = 0;
    };
    double meanFrom(size_t first) const {
        Class sum;
        for (size_t i = first; i < classes_.size(); ++i) {
            sum.count += classes_[i].count;
            sum.power += classes_[i].power;
        }
        return sum.count > 0 ? sum.power / double(sum.count) : 0;
    }

    std::array<Class, size_t(100 * perUnit)> classes_{};  // from -70 to +30 LUFS
};

}  // namespace

struct LiveLoudness::Parts {
    using Block = std::vector<double>;  // mean squares by channel

    double weighted(const Block& block) const {
        double sum = 0;
        for (size_t c = 0; c < block.size(); ++c) { sum += weights[c] * block[c]; }
        return sum;
    }
    double lastPower(size_t count) const {
        double sum = 0;
        for (size_t i = last.size() - std::min(count, last.size()); i < last.size(); ++i) { sum += weighted(last[i]); }
        return sum / double(std::max<size_t>(std::min(count, last.size()), 1));
    }
    void keep(Block block) {
        last.push_back(std::move(block));
        if (last.size() > shortBlocks) { last.pop_front(); }
        ++sinceReset;
        if (sinceReset >= gateBlocks) { gates.add(lastPower(gateBlocks)); }
    }

    std::optional<Loudness::KPowers> powers;
    std::vector<double> weights;
    std::vector<std::vector<float>> repaired;
    std::vector<const float*> planes;
    std::deque<Block> last;
    size_t sinceReset = 0;  // blocks that may be part of a gating block
    size_t covered = 0;     // blocks in earlier formats
    Gates gates;
};

LiveLoudness::LiveLoudness() : parts_(std::make_unique<Parts>()) {}

LiveLoudness::~LiveLoudness() = default;

void LiveLoudness::open(double sampleRate, const SpeakerList& speakers) {
    Parts& p = *parts_;
    std::vector<size_t> all(speakers.size());
    for (size_t c = 0; c < all.size(); ++c) { all[c] = c; }
    p.powers.emplace(sampleRate, all);
    p.weights = Loudness::weights(SourceFormat::speakers(speakers), int(speakers.size()));
    p.repaired.resize(speakers.size());
    p.planes.resize(speakers.size());
    p.last.clear();
    p.covered += std::exchange(p.sinceReset, 0);
}

void LiveLoudness::push(const float* const* planes, int frames) {
    Parts& p = *parts_;
    if (!p.powers || frames < 1) { return; }
    for (size_t c = 0; c < p.planes.size(); ++c) {
        p.planes[c] = Signal::usable({planes[c], size_t(frames)}, p.repaired[c]).data();
    }
    const auto first = size_t(p.powers->frames() / p.powers->blockFrames());
    const auto end = size_t((p.powers->frames() + frames) / p.powers->blockFrames());
    std::vector<Parts::Block> blocks(end - first, Parts::Block(p.planes.size(), 0.0));
    p.powers->push(p.planes.data(), frames, [&](size_t block, size_t channel, double meanSquare) {
        // Below 4 kHz the shelf has no stable form, so its output may overflow.
        if (std::isfinite(meanSquare)) { blocks[block - first][channel] = meanSquare; }
    });
    for (Parts::Block& block : blocks) { p.keep(std::move(block)); }
}

void LiveLoudness::reset() {
    parts_->gates.clear();
    parts_->sinceReset = 0;
    parts_->covered = 0;
}

LiveLoudness::Reading LiveLoudness::reading() const {
    const Parts& p = *parts_;
    Reading out;
    out.powers.assign(p.planes.size(), 0.0);
    for (const Parts::Block& block : p.last) {
        for (size_t c = 0; c < block.size(); ++c) { out.powers[c] += block[c] / double(p.last.size()); }
    }
    if (p.last.size() >= gateBlocks) { out.momentary = loudnessOf(p.lastPower(gateBlocks)); }
    out.shortTerm = loudnessOf(p.lastPower(shortBlocks));
    out.integrated = p.gates.integrated();
    out.seconds = 0.1 * double(p.covered + p.sinceReset);
    return out;
}

}  // namespace brindlehum
