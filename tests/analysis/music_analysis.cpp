// MusicAnalysis: the stages together on a whole piece, progress, cancellation, overrides and the summary.
#include "analysis/piece/music_analysis.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "analysis/signal/read_planar.h"
#include "base/error.h"
#include "piece/piece_reader.h"
#include "support/audio_files.h"
#include "support/music.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

using Status = AnalysisOutcome::Status;
using test::Planes;

Planes piece() {
    return Planes(2, test::clickPiece(24));
}

AnalysisOutcome analysed(const Planes& channels, const AnalysisProgress& progress = {}, double rate = test::musicRate) {
    MemorySamples samples(channels, rate);
    return analyzeMusic({samples, SourceFormat::stereo(), "piece.wav", std::nullopt, std::nullopt}, progress);
}

TEST(MusicAnalysis, AssemblesAllStages) {
    const Planes channels = piece();
    std::vector<AnalysisStage> stages;
    const auto got = analysed(channels, [&](AnalysisStage stage) {
        if (stages.empty() || stages.back() != stage) { stages.push_back(stage); }
        return true;
    });
    ASSERT_EQ(got.status, Status::done);
    ASSERT_EQ(stages.size(), size_t(analysisStageCount));
    for (size_t i = 0; i < stages.size(); ++i) { EXPECT_EQ(stages[i], AnalysisStage(i)); }
    const MusicAnalysis& a = *got.analysis;
    EXPECT_EQ(a.seconds, 24);
    EXPECT_EQ(a.mono22k.size(), int64_t(24 * test::musicRate));
    EXPECT_NEAR(a.grid.bpm, 120, 0.2);
    EXPECT_TRUE(a.grid.steady);
    EXPECT_EQ(a.key.tonic + a.key.mode, "Aminor");
    EXPECT_EQ(a.structure.profile.rms.size(), a.grid.boundaries().size() - 1);
    EXPECT_EQ(a.structure.similarity.size, int(a.structure.profile.rms.size()));
    EXPECT_GT(a.loudness.integrated, -40);
}

TEST(MusicAnalysis, CanBeCancelledBeforeEveryStageAndWhileItReads) {
    const Planes channels = piece();
    int all = 0;
    analysed(channels, [&](AnalysisStage) { return ++all > 0; });
    EXPECT_GT(all, 24 + analysisStageCount) << "asks less than once a second while it reads";
    for (int last = 0; last < all; ++last) {
        int reported = 0;
        const auto got = analysed(channels, [&](AnalysisStage) { return ++reported <= last; });
        EXPECT_EQ(got.status, Status::cancelled) << last;
        EXPECT_FALSE(got.analysis) << last;
        EXPECT_EQ(reported, last + 1) << "the work went on after the cancellation";
    }
}

TEST(MusicAnalysis, RefusesASecondOrLess) {
    for (const auto& [frames, rate, status] : {std::tuple{size_t{22050}, 22050.0, Status::tooShort},
                                               {22051, 22050.0, Status::noPulse},
                                               {0, 48000.0, Status::tooShort},
                                               {48000, 48000.7, Status::tooShort},
                                               {384000, 384000.0, Status::tooShort}}) {
        const Planes channels(1, test::noise(frames, 4));
        EXPECT_EQ(analysed(channels, {}, rate).status, status) << frames << " at " << rate;
    }
    EXPECT_EQ(analysed(Planes()).status, Status::tooShort);
}

// A source that only states how much it holds.
class Claim : public SampleSource {
public:
    Claim(double rate, int64_t frames) : rate_(rate), frames_(frames) {}
    double sampleRate() const override { return rate_; }
    int channels() const override { return 1; }
    int64_t frames() const override { return frames_; }
    int read(int64_t, int, const float**) override {
        ADD_FAILURE() << "reads what should be refused";
        return 0;
    }

private:
    double rate_;
    int64_t frames_;
};

TEST(MusicAnalysis, RefusesRatesAndLengthsThatNoMusicHas) {
    for (const auto& [rate, frames] :
         {std::pair<double, int64_t>{1, 4096}, {0.01, 4096}, {1000, 4096}, {48000, int64_t(48000) * 3600 * 7}}) {
        Claim claim(rate, frames);
        EXPECT_THROW(analyzeMusic({claim, std::nullopt, "x.caf", {}, {}}), Error) << rate;
    }
}

TEST(MusicAnalysis, DigitalSilenceHasNoPulse) {
    const Planes channels(2, std::vector<float>(20 * 22050, 0.0F));
    EXPECT_EQ(analysed(channels).status, Status::noPulse);
}

// Bursts of noise at `times` that die away within `decay` seconds, over `seconds` in all.
std::vector<float> bursts(const std::vector<double>& times, double decay, double seconds) {
    std::vector<float> x(size_t(seconds * test::musicRate));
    const std::vector<float> noise = test::noise(x.size(), 5);
    for (size_t i = 0; i < x.size(); ++i) {
        for (const double time : times) {
            const double after = double(i) / test::musicRate - time;
            if (after >= 0) { x[i] += 0.5F * noise[i] * float(std::exp(-after / decay)); }
        }
    }
    return x;
}

// Hits, slams, syllables at times of no order, and rain have no tempo; a tempo set by hand is taken all the same.
TEST(MusicAnalysis, OnlyWhatRepeatsHasAPulse) {
    const auto clicks = [](double seconds) {
        return test::clickTrack(test::beatTimes(0.05, seconds, [](double) { return 120.0; }), 4, 0, seconds);
    };
    const struct {
        const char* what;
        std::vector<float> x;
        bool pulse;
    } table[] = {
        {"a hit", bursts({0.2}, 0.1, 2), false},
        {"a door that slams and rattles", bursts({0.3, 0.36, 0.55, 0.62, 0.93, 1.04}, 0.05, 3), false},
        {"two steps", bursts({0.2, 1.3}, 0.05, 3), false},
        {"a word of three syllables", bursts({0.1, 0.31, 0.44}, 0.06, 1.1), false},
        {"a sentence", bursts({0.1, 0.24, 0.5, 0.61, 0.78, 1.2, 1.37, 1.44, 1.8, 2.05, 2.3, 2.36}, 0.05, 3), false},
        {"rain", test::noise(size_t(12 * test::musicRate), 9), false},
        {"little more than a second of clicks", clicks(1.2), false},
        {"four seconds of clicks", clicks(4), true},
        {"ten seconds of music", test::clickPiece(10), true},
    };
    for (const auto& row : table) {
        const Planes channels(1, row.x);
        EXPECT_EQ(analysed(channels).status, row.pulse ? Status::done : Status::noPulse) << row.what;
        MemorySamples samples(channels, test::musicRate);
        EXPECT_EQ(analyzeMusic({samples, std::nullopt, "x.wav", 100.0, {}}).status, Status::done) << row.what;
    }
}

// Silence but for a click every hour: no pulse, and with a tempo set by hand more bars than any song has.
TEST(MusicAnalysis, SurvivesAClickEveryHour) {
    constexpr size_t hour = 3600 * 8000;
    Planes channels(1, std::vector<float>(hour + 80000, 0.0F));
    channels[0][8000] = channels[0][8000 + hour] = 1;
    MemorySamples samples(channels, 8000);
    const auto got = analyzeMusic({samples, std::nullopt, "x.wav", 120.0, std::nullopt});
    ASSERT_EQ(got.status, Status::done);
    const MusicAnalysis& a = *got.analysis;
    EXPECT_NEAR(a.seconds, 3610, 1e-9);
    EXPECT_LT(a.tempo.score, 0.1);
    EXPECT_TRUE(std::ranges::is_sorted(a.grid.boundaries()));
    EXPECT_LT(a.structure.pins.musicEnd, int(a.grid.boundaries().size()));
}

// A view of a signal on disk, in memory and borrowed, at the edges of its blocks and beyond its ends.
TEST(WorkingSignal, ReadsTheSameFromDiskAsFromMemory) {
    const std::vector<float> x = test::noise(900001, 12);
    WorkingSignal onDisk(1000);
    WorkingSignal inMemory;
    for (size_t at = 0; at < x.size(); at += 70001) {
        const auto block = std::span(x).subspan(at, std::min<size_t>(70001, x.size() - at));
        onDisk.append(block);
        inMemory.append(block);
    }
    onDisk.finish();
    inMemory.finish();
    EXPECT_EQ(onDisk.size(), int64_t(x.size()));
    for (const auto& [from, to] : {std::pair<int64_t, int64_t>{0, 1},
                                   {262143, 350005},
                                   {-5, 10},
                                   {899990, 900100},
                                   {0, 900001},
                                   {7, 7},
                                   {950000, 960000}}) {
        std::vector<float> buffers[2];
        const auto disk = SignalView(onDisk).range(from, to, buffers[0]);
        const auto memory = SignalView(inMemory).range(from, to, buffers[1]);
        EXPECT_TRUE(std::ranges::equal(disk, memory)) << from;
        const auto begin = std::clamp<int64_t>(from, 0, 900001);
        EXPECT_TRUE(std::equal(disk.begin(), disk.end(), x.begin() + begin)) << from;
        EXPECT_EQ(int64_t(disk.size()), std::clamp<int64_t>(to, begin, 900001) - begin);
        EXPECT_EQ(SignalView(onDisk).rms(from, to), SignalView(x).rms(from, to)) << from;
    }
}

// The extractors give the same from blocks of any length as from the whole signal.
TEST(PieceReader, BlocksChangeNothing) {
    const std::vector<float> x = test::clickPiece(9);
    const auto whole = TempoAnalyzer::envelopes(x);
    const GridBuilder::PulseLevels levels(x);
    const SpectralFrames spectrum(x);
    for (const size_t length : {size_t{1}, size_t{21}, size_t{4096}, size_t{50000}, x.size()}) {
        WorkingExtractors extractors;
        for (size_t at = 0; at < x.size(); at += length) {
            extractors.push(std::span(x).subspan(at, std::min(length, x.size() - at)));
        }
        PieceFeatures got;
        extractors.finish(got);
        EXPECT_TRUE(got.envelopes.full == whole.full && got.envelopes.low == whole.low) << length;
        EXPECT_TRUE(got.levels.attacks == levels.attacks && got.levels.onsets == levels.onsets) << length;
        EXPECT_TRUE(got.spectrum.chroma == spectrum.chroma && got.spectrum.bands == spectrum.bands) << length;
        EXPECT_EQ(got.spectrum.rms, spectrum.rms) << length;
    }
}

TEST(ReadPlanar, GivesTheWholeFileByChannel) {
    const test::TempFolder folder;
    const Planes planes = test::noisePlanes(3, 150001);
    test::writeAudio(folder / "x.wav", planes, {.rate = 96000});
    const auto got = Signal::readPlanar(folder / "x.wav");
    EXPECT_EQ(got.channels, planes);
    EXPECT_EQ(got.sampleRate, 96000);
    EXPECT_THROW(Signal::readPlanar(folder / "none.wav"), Error);
}

TEST(MusicAnalysis, SumsUpInOneLine) {
    MusicAnalysis a;
    a.grid.bpm = 92.5;
    a.tempo.meter.label = "3/4";
    a.tempo.twin = 138.75;
    a.tempo.drift = "BREATHING";
    a.key.tonic = "F#";
    a.key.mode = "minor";
    a.loudness.integrated = -14.21;
    a.loudness.truePeak = -0.4;
    EXPECT_EQ(a.summary(), "92.50 BPM 3/4 (twin 138.8) · breathing · F#m · -14.2 LUFS · -0.4 dBTP");
    // The grid may follow the twin in other bars than the tempo analysis has.
    a.tempo.bpm = 92.5;
    a.grid.bpm = 138.8;
    a.grid.beatsPerBar = 3;
    EXPECT_EQ(a.summary().substr(0, 26), "138.80 BPM 3/4 (twin 92.5)");
    a.grid.bpm = 92.5;
    a.grid.steady = true;
    a.tempo.twin.reset();
    a.key.mode = "major";
    a.loudness.truePeak = -std::numeric_limits<double>::infinity();
    EXPECT_EQ(a.summary(), "92.50 BPM 3/4 · steady · F# · -14.2 LUFS · -inf dBTP");
}

}  // namespace
}  // namespace brindlehum
