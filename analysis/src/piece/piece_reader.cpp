// readPiece: reads blocks, measures their loudness, and feeds their mean at the working rate to all extractors.
#include "piece/piece_reader.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>
#include <vector>

#include "dsp/resampler.h"
#include "dsp/signal.h"
#include "loudness/loudness_meter.h"

namespace brindlehum {
namespace {

constexpr int blockFrames = int(Loudness::LoudnessMeter::pieceFrames);

// The mean of the source's channels, block by block. Everything read goes through the loudness meter.
class MonoReader {
public:
    MonoReader(SampleSource& source, const std::optional<SourceFormat>& format, const std::function<bool()>& goOn)
        : source_(source),
          goOn_(goOn),
          meter_(source.sampleRate(), format, source.channels()),
          planes_(size_t(source.channels())) {}

    // Up to `limit` further samples; none at the end, and after a cancellation.
    std::span<const float> next(int limit) {
        if (rest_.empty()) { readBlock(); }
        const auto part = rest_.first(std::min(rest_.size(), size_t(limit)));
        rest_ = rest_.subspan(part.size());
        return part;
    }
    bool cancelled() const { return cancelled_; }
    LoudnessResult loudness() { return meter_.finish(); }

private:
    void readBlock() {
        cancelled_ = cancelled_ || !goOn_();
        if (cancelled_) { return; }
        const int count = source_.read(position_, blockFrames, planes_.data());
        position_ += count;
        meter_.push(planes_.data(), count);
        mono_.resize(size_t(count));
        Signal::mono(planes_.data(), int(planes_.size()), mono_.size(), mono_.data());
        // Repair before the rate is converted, since a single unusable sample would spread to its neighbours.
        rest_ = Signal::usable(mono_, repaired_);
    }

    SampleSource& source_;
    const std::function<bool()>& goOn_;
    Loudness::LoudnessMeter meter_;
    std::vector<const float*> planes_;
    std::vector<float> mono_, repaired_;
    std::span<const float> rest_;
    int64_t position_ = 0;
    bool cancelled_ = false;
};

std::optional<Resampler> converterFor(double rate) {
    if (std::abs(rate - Signal::analysisRate) <= 0.5) { return std::nullopt; }
    try {
        return Resampler(rate, Signal::analysisRate, 1);
    } catch (const std::runtime_error&) { return std::nullopt; }
}

void feed(MonoReader& reader, double rate, WorkingExtractors& extractors) {
    auto converter = converterFor(rate);
    if (!converter) {
        for (auto block = reader.next(blockFrames); !block.empty(); block = reader.next(blockFrames)) {
            extractors.push(block);
        }
        return;
    }
    const Resampler::Pull pull = [&reader](int limit, const float** planes) {
        const auto part = reader.next(limit);
        planes[0] = part.data();
        return int(part.size());
    };
    std::vector<float> block(blockFrames);
    for (;;) {
        float* plane = block.data();
        const int got = converter->process(&plane, blockFrames, pull);
        if (got < 1) { return; }
        extractors.push({block.data(), size_t(got)});
    }
}

}  // namespace

void WorkingExtractors::push(std::span<const float> block) {
    mono22k_.append(block);
    onsets_.push(block);
    attackLevels_.push(block);
    onsetLevels_.push(block);
    spectrum_.push(block);
}

void WorkingExtractors::finish(PieceFeatures& into) {
    mono22k_.finish();
    into.mono22k = std::move(mono22k_);
    into.envelopes = onsets_.finish();
    into.levels.attacks = attackLevels_.finish();
    into.levels.onsets = onsetLevels_.finish();
    into.spectrum = spectrum_.finish();
    into.harmony = spectrum_.finishHarmony();
}

std::optional<PieceFeatures> readPiece(SampleSource& source, const std::optional<SourceFormat>& format,
                                       const std::function<bool()>& goOn) {
    WorkingExtractors extractors;
    extractors.reserve(std::llround(double(source.frames()) * Signal::analysisRate / source.sampleRate()));
    MonoReader reader(source, format, goOn);
    feed(reader, source.sampleRate(), extractors);
    if (reader.cancelled()) { return std::nullopt; }
    PieceFeatures out;
    extractors.finish(out);
    out.loudness = reader.loudness();
    return out;
}

}  // namespace brindlehum
