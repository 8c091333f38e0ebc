// MusicAnalysis: runs the stages, each after those that it needs.
#include "analysis/music_analysis.h"

#include <algorithm>
#include <cmath>

#include "analysis/bar_lines.h"
#include "analysis/grid_builder.h"
#include "analysis/tempo_analyzer.h"
#include "analysis/text.h"
#include "base/text.h"
#include "dsp/signal.h"

namespace brindlehum {

AnalysisOutcome analyzeMusic(const AnalysisInput& input, const AnalysisProgress& progress) {
    using Status = AnalysisOutcome::Status;
    const size_t frames = input.channels.empty() ? 0 : input.channels[0].size();
    if (frames <= size_t(input.sampleRate)) { return {Status::tooShort, std::nullopt}; }
    const auto cancelledAt = [&progress](AnalysisStage stage) { return progress && !progress(stage); };

    MusicAnalysis out;
    out.seconds = double(frames) / input.sampleRate;
    if (cancelledAt(AnalysisStage::mono)) { return {Status::cancelled, std::nullopt}; }
    std::vector<float> mono = Signal::mono(input.channels);
    // Repair before the rate is converted, since a single unusable sample would spread to its neighbours.
    std::vector<float> repaired;
    if (Signal::usable(mono, repaired).data() != mono.data()) { mono = std::move(repaired); }
    out.mono22k = Signal::resample(std::move(mono), input.sampleRate, Signal::analysisRate);

    if (cancelledAt(AnalysisStage::tempo)) { return {Status::cancelled, std::nullopt}; }
    auto tempo = TempoAnalyzer::analyze(out.mono22k);
    // Digital silence has no onset at all.
    if (!tempo || std::ranges::none_of(tempo->envFull, [](float onset) { return onset > 0; })) {
        return {Status::noPulse, std::nullopt};
    }
    out.tempo = std::move(*tempo);

    if (cancelledAt(AnalysisStage::grid)) { return {Status::cancelled, std::nullopt}; }
    HarmonyReader harmony;
    harmony.push(out.mono22k);
    const MusicGrid guess = GridBuilder::build(out.tempo, out.mono22k, out.seconds, input.bpm, input.beatsPerBar);
    out.grid = BarLines::choose(guess, out.tempo, out.mono22k, harmony.finish(), {input.bpm, input.beatsPerBar});

    if (cancelledAt(AnalysisStage::spectrum)) { return {Status::cancelled, std::nullopt}; }
    const SpectralFrames spectrum(out.mono22k);

    if (cancelledAt(AnalysisStage::key)) { return {Status::cancelled, std::nullopt}; }
    out.key = KeyAnalyzer::analyze(spectrum, out.grid.bpm, out.tempo.score);

    if (cancelledAt(AnalysisStage::loudness)) { return {Status::cancelled, std::nullopt}; }
    out.loudness = Loudness::measure(input.channels, input.sampleRate, input.source);

    if (cancelledAt(AnalysisStage::structure)) { return {Status::cancelled, std::nullopt}; }
    out.structure = Structure::analyze(out.mono22k, Signal::analysisRate, out.grid, spectrum, input.name);
    return {Status::done, std::move(out)};
}

std::string MusicAnalysis::meter() const {
    return tempo.meter.group == grid.beatsPerBar ? tempo.meter.label : std::to_string(grid.beatsPerBar) + "/4";
}

std::optional<double> MusicAnalysis::twin() const {
    const bool gridFollowsIt = tempo.twin && std::abs(grid.bpm / *tempo.twin - 1) < 0.04;
    return gridFollowsIt ? tempo.bpm : tempo.twin;
}

std::string MusicAnalysis::summary() const {
    std::string text = fixed(grid.bpm, 2) + " BPM " + meter();
    if (const auto other = twin()) { text += " (twin " + fixed(*other, 1) + ")"; }
    text += " · " + (grid.steady ? std::string("steady") : lowerAscii(tempo.drift));
    text += " · " + key.tonic + (key.mode == "minor" ? "m" : "");
    text += " · " + fixed(loudness.integrated, 1) + " LUFS · " + fixed(loudness.truePeak, 1) + " dBTP";
    return text;
}

}  // namespace brindlehum
