// readPiece: goes through a piece once, in blocks, and takes from it all that the later stages need.
#pragma once

#include <functional>
#include <optional>
#include <span>

#include "analysis/grid/grid_builder.h"
#include "analysis/loudness/loudness.h"
#include "analysis/signal/working_signal.h"
#include "analysis/spectrum/harmony_frames.h"
#include "analysis/spectrum/spectral_frames.h"
#include "analysis/tempo/tempo_analyzer.h"
#include "audio/stream/sample_source.h"
#include "grid/rms_track.h"
#include "spectrum/spectral_extractor.h"
#include "tempo/onset_extractor.h"

namespace brindlehum {

struct PieceFeatures {
    WorkingSignal mono22k;
    TempoAnalyzer::Envelopes envelopes;
    GridBuilder::PulseLevels levels;
    SpectralFrames spectrum;
    HarmonyFrames harmony;
    LoudnessResult loudness;
};

// All extractors over the working signal, fed with the same blocks.
class WorkingExtractors {
public:
    // Usable samples at Signal::analysisRate.
    void push(std::span<const float> block);
    void finish(PieceFeatures& into);
    void reserve(int64_t samples) { mono22k_.reserve(samples); }

private:
    WorkingSignal mono22k_;
    TempoAnalyzer::OnsetExtractor onsets_;
    RmsTrack attackLevels_{GridBuilder::PulseLevels::attackHop};
    RmsTrack onsetLevels_{GridBuilder::PulseLevels::onsetHop};
    SpectralExtractor spectrum_;
};

// Asks `goOn` before each block of about a third of a second; returns none once it says no. Throws the source's Error,
// or Error when there is no room for a long working signal.
std::optional<PieceFeatures> readPiece(SampleSource& source, const std::optional<SourceFormat>& format,
                                       const std::function<bool()>& goOn);

}  // namespace brindlehum
