// MusicAnalysis: the stages together on a whole piece, progress, cancellation, overrides and the summary.
#include "analysis/music_analysis.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "analysis/read_planar.h"
#include "base/error.h"
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

AnalysisInput inputOf(const Planes& channels, double rate = test::musicRate) {
    return {channels, rate, SourceFormat::stereo(), "piece.wav", std::nullopt, std::nullopt};
}

TEST(MusicAnalysis, AssemblesAllStages) {
    const Planes channels = piece();
    std::vector<AnalysisStage> stages;
    const auto got = analyzeMusic(inputOf(channels), [&](AnalysisStage stage) {
        stages.push_back(stage);
        return true;
    });
    ASSERT_EQ(got.status, Status::done);
    ASSERT_EQ(stages.size(), size_t(analysisStageCount));
    for (size_t i = 0; i < stages.size(); ++i) { EXPECT_EQ(stages[i], AnalysisStage(i)); }
    const MusicAnalysis& a = *got.analysis;
    EXPECT_EQ(a.seconds, 24);
    EXPECT_EQ(a.mono22k.size(), size_t(24 * test::musicRate));
    EXPECT_NEAR(a.grid.bpm, 120, 0.2);
    EXPECT_TRUE(a.grid.steady);
    EXPECT_EQ(a.key.tonic + a.key.mode, "Aminor");
    EXPECT_EQ(a.structure.profile.rms.size(), a.grid.boundaries().size() - 1);
    EXPECT_EQ(a.structure.similarity.size, int(a.structure.profile.rms.size()));
    EXPECT_GT(a.loudness.integrated, -40);
}

TEST(MusicAnalysis, CanBeCancelledBeforeEveryStage) {
    const Planes channels = piece();
    for (int last = 0; last < analysisStageCount; ++last) {
        int reported = 0;
        const auto got = analyzeMusic(inputOf(channels), [&](AnalysisStage stage) {
            ++reported;
            return int(stage) < last;
        });
        EXPECT_EQ(got.status, Status::cancelled) << last;
        EXPECT_FALSE(got.analysis) << last;
        EXPECT_EQ(reported, last + 1) << "a stage ran on after the cancellation";
    }
}

TEST(MusicAnalysis, RefusesASecondOrLess) {
    for (const auto& [frames, rate, status] : {std::tuple{size_t{22050}, 22050.0, Status::tooShort},
                                               {22051, 22050.0, Status::done},
                                               {0, 48000.0, Status::tooShort},
                                               {48000, 48000.7, Status::tooShort},
                                               {384000, 384000.0, Status::tooShort}}) {
        const Planes channels(1, test::noise(frames, 4));
        EXPECT_EQ(analyzeMusic(inputOf(channels, rate)).status, status) << frames << " at " << rate;
    }
    EXPECT_EQ(analyzeMusic(inputOf(Planes())).status, Status::tooShort);
}

TEST(MusicAnalysis, DigitalSilenceHasNoPulse) {
    const Planes channels(2, std::vector<float>(20 * 22050, 0.0F));
    EXPECT_EQ(analyzeMusic(inputOf(channels)).status, Status::noPulse);
}

// Silence but for a click every hour: no pulse, and more bars than any song has.
TEST(MusicAnalysis, SurvivesAClickEveryHour) {
    constexpr size_t hour = 3600 * 8000;
    Planes channels(1, std::vector<float>(hour + 80000, 0.0F));
    channels[0][8000] = channels[0][8000 + hour] = 1;
    const auto got = analyzeMusic(inputOf(channels, 8000));
    ASSERT_EQ(got.status, Status::done);
    const MusicAnalysis& a = *got.analysis;
    EXPECT_NEAR(a.seconds, 3610, 1e-9);
    EXPECT_LT(a.tempo.score, 0.1);
    EXPECT_TRUE(std::ranges::is_sorted(a.grid.boundaries()));
    EXPECT_LT(a.structure.pins.musicEnd, int(a.grid.boundaries().size()));
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
