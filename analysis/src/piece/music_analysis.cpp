// MusicAnalysis: reads the piece, then runs the stages, each after those that it needs.
#include "analysis/piece/music_analysis.h"

#include <algorithm>
#include <cmath>

#include "analysis/bars/bar_lines.h"
#include "analysis/grid/grid_builder.h"
#include "analysis/structure/text.h"
#include "analysis/tempo/tempo_analyzer.h"
#include "base/error.h"
#include "base/text.h"
#include "base/time_text.h"
#include "dsp/signal.h"
#include "piece/piece_reader.h"

namespace brindlehum {
namespace {

std::string uncertainNote(const MusicGrid& grid) {
    return "Bar lines uncertain (" + fixed(100 * grid.downbeatConfidence, 0) +
           " % sure): if cuts fall on the wrong beat, set where a bar starts, the tempo or the beats a bar by hand "
           "(Set Bars in the window, or the words downbeat, bpm and meter)";
}

std::string givenNote(const AnalysisInput& input) {
    std::string text;
    const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
    if (input.bpm) { add(fixed(*input.bpm, 2) + " BPM"); }
    if (input.beatsPerBar) {
        add(std::to_string(*input.beatsPerBar) + (*input.beatsPerBar == 1 ? " beat a bar" : " beats a bar"));
    }
    if (input.downbeat) { add("a bar starts at " + timeText(*input.downbeat)); }
    return text.empty() ? text : "Set by hand: " + text;
}

}  // namespace

namespace {

// Refuses what a few bytes can claim, and what would fill disk and memory without being a piece of music.
void refuseUnlikely(double seconds, double sampleRate) {
    if (sampleRate < lowestAnalysisRate) {
        throw Error("A sample rate of " + fixed(sampleRate, 0) + " Hz is too low for a music analysis");
    }
    if (seconds > longestAnalysis) {
        throw Error(ErrorKind::tooLargeToLoad, "More than 6 hours are too long for a music analysis");
    }
}

}  // namespace

AnalysisOutcome analyzeMusic(const AnalysisInput& input, const AnalysisProgress& progress) {
    using Status = AnalysisOutcome::Status;
    SampleSource& samples = input.samples;
    if (samples.frames() <= int64_t(samples.sampleRate())) { return {Status::tooShort, {}, {}}; }
    const auto goOnTo = [&progress](AnalysisStage stage) { return !progress || progress(stage); };
    const auto cancelled = [] { return AnalysisOutcome{Status::cancelled, {}, {}}; };

    MusicAnalysis out;
    out.seconds = double(samples.frames()) / samples.sampleRate();
    refuseUnlikely(out.seconds, samples.sampleRate());
    auto piece = readPiece(samples, input.source, [&] { return goOnTo(AnalysisStage::mono); });
    if (!piece) { return cancelled(); }

    if (!goOnTo(AnalysisStage::tempo)) { return cancelled(); }
    auto tempo =
        TempoAnalyzer::analyze(std::move(piece->envelopes), double(piece->mono22k.size()) / Signal::analysisRate);
    const auto onsets = [&] { return std::ranges::any_of(tempo->envFull, [](float onset) { return onset > 0; }); };
    // A tempo set by hand needs something to sound, but no pulse.
    if (!tempo || !(input.bpm ? onsets() : TempoAnalyzer::hasPulse(*tempo))) {
        return {Status::noPulse, {}, std::move(piece->mono22k)};
    }
    out.tempo = std::move(*tempo);

    if (!goOnTo(AnalysisStage::grid)) { return cancelled(); }
    const MusicGrid guess = GridBuilder::build(out.tempo, piece->levels, out.seconds, input.bpm, input.beatsPerBar);
    out.grid = BarLines::choose(guess, out.tempo, piece->levels, piece->harmony,
                                {input.bpm, input.beatsPerBar, input.downbeat});
    piece->levels = {};
    piece->harmony = {};

    // The pass through the samples has measured the spectrum and the loudness already.
    if (!goOnTo(AnalysisStage::spectrum)) { return cancelled(); }
    if (!goOnTo(AnalysisStage::key)) { return cancelled(); }
    out.key = KeyAnalyzer::analyze(piece->spectrum, out.grid.bpm, out.tempo.score);

    if (!goOnTo(AnalysisStage::loudness)) { return cancelled(); }
    out.loudness = std::move(piece->loudness);

    if (!goOnTo(AnalysisStage::structure)) { return cancelled(); }
    out.mono22k = std::move(piece->mono22k);
    out.structure = Structure::analyze(out.mono22k, Signal::analysisRate, out.grid, piece->spectrum, input.name);
    if (std::string given = givenNote(input); !given.empty()) { out.structure.notes.push_back(std::move(given)); }
    if (out.grid.barLinesUncertain()) { out.structure.notes.push_back(uncertainNote(out.grid)); }
    return {Status::done, std::move(out), {}};
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
