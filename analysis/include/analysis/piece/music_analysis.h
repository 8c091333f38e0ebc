// MusicAnalysis: the whole result for one piece of music, and the function that runs all stages.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/grid/music_grid.h"
#include "analysis/key/key_analyzer.h"
#include "analysis/loudness/loudness.h"
#include "analysis/signal/working_signal.h"
#include "analysis/structure/structure.h"
#include "analysis/tempo/tempo_result.h"
#include "audio/stream/sample_source.h"

namespace brindlehum {

// An immutable value; analysing the piece again replaces the whole value.
struct MusicAnalysis {
    TempoResult tempo;
    MusicGrid grid;
    KeyResult key;
    LoudnessResult loudness;
    StructureResult structure;
    WorkingSignal mono22k;  // for views
    double seconds = 0;     // frames / the file's rate

    // "3/4": the beats a bar of the grid, by the name that the tempo analysis gives to them if it found as many.
    std::string meter() const;
    // A second reading of the tempo that is almost as good, BPM: the tempo analysis's twin, or its own tempo where the
    // grid follows the twin.
    std::optional<double> twin() const;
    // "92.50 BPM 3/4 (twin 138.8) · breathing · F#m · -14.2 LUFS · -0.4 dBTP".
    std::string summary() const;
};

// In the order in which the stages run.
enum class AnalysisStage { mono, tempo, grid, spectrum, key, loudness, structure };
inline constexpr int analysisStageCount = 7;

// The input of an analysis. The samples are borrowed for the call, and read once, in blocks.
struct AnalysisInput {
    SampleSource& samples;
    std::optional<SourceFormat> source;
    std::string_view name;  // the file's name
    // The user's own values, which override the analysis.
    std::optional<double> bpm;                      // above 0
    std::optional<int> beatsPerBar;                 // 1 or more
    std::optional<double> downbeat = std::nullopt;  // seconds: a bar starts here
};

struct AnalysisOutcome {
    enum class Status {
        done,
        tooShort,  // a second or less
        noPulse,   // no tempo was found, nor set by hand
        cancelled
    };
    Status status = Status::done;
    std::optional<MusicAnalysis> analysis;  // set when done
    std::optional<WorkingSignal> mono22k;   // set on noPulse, for views

    // The text for the user on noPulse.
    static constexpr std::string_view noPulseText = "No steady pulse found; set the tempo by hand";
};

// Called on the calling thread with the stage that starts next, and before each block of about a third of a second with
// the stage mono, which takes most of the time; returning false ends the analysis there.
using AnalysisProgress = std::function<bool(AnalysisStage)>;

// The slowest sample rate, in Hz, and the longest piece, in seconds, that are analysed.
inline constexpr double lowestAnalysisRate = 2000;
inline constexpr double longestAnalysis = 6 * 3600;

// Runs all stages on the calling thread, which must be a background thread. No shared state. Memory doesn't grow with
// the samples, but only with what the analysis keeps of them: some 200 MB up to 25 minutes, 480 MB for three hours.
// Throws the source's Error, Error when there is no room on disk for the working signal of a longer piece, and Error
// beyond the two limits above.
AnalysisOutcome analyzeMusic(const AnalysisInput& input, const AnalysisProgress& progress = {});

}  // namespace brindlehum
