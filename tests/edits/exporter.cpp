// TempEditExporter: folders, sheets, files as other readers see them, and what a broken-off export leaves.
#include "edits/temp_edit_exporter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sndfile.h>

#include "audio/probe/audio_file_info.h"
#include "base/error.h"
#include "edits/temp_edit_renderer.h"
#include "support/audio_files.h"
#include "support/child.h"
#include "support/full_disk.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
using TempEditExporter::Result;
using test::Planes;
using test::TempFolder;
using testing::ElementsAre;

std::vector<std::string> namesIn(const fs::path& folder) {
    std::vector<std::string> out;
    for (const auto& entry : fs::directory_iterator(folder)) { out.push_back(entry.path().filename()); }
    std::ranges::sort(out);
    return out;
}

// Three plans over two seconds of noise.
struct Export {
    explicit Export(fs::path where, int channels = 2)
        : folder(std::move(where)), audio(test::noisePlanes(channels, 96000)), plans(3) {
        plans[0] = {"Intro", EditPlan::Kind::piece, {{0, 20000}}, {}, {}, 0, 0, "Intro b1–b4", 1, false};
        plans[1] = {
            "30s", EditPlan::Kind::cutdown, {{0, 30000}, {60000, 96000}}, 30, {}, 0, 0, "b1–2 ↷ b5–8 + ring", 0.874,
            false};
        plans[2] = {"1m00s", EditPlan::Kind::backtimed, {{5000, 96000}}, 60, 1.5, 480, 0, "Backtimed", 0.999, false};
    }
    bool write(const TempEditExporter::Progress& progress = {}, const std::stop_token& stop = {}) {
        return TempEditExporter::write({folder, "Rain – Theme", header, plans, audio, 48000, options}, done, progress,
                                       stop);
    }
    fs::path folder;
    Planes audio;
    std::vector<EditPlan> plans;
    std::vector<std::string> header = {"one", "two\nand more"};
    TempEditOptions options;
    Result done;
};

TEST(TempEditExporter, FilesReadBackAsRendered) {
    for (const int channels : {1, 2, 6}) {
        const TempFolder temp;
        Export job(temp / "deep/er/Rain Edits", channels);
        ASSERT_TRUE(job.write());
        ASSERT_EQ(job.done.files.size(), 3U);
        EXPECT_THAT(namesIn(job.folder), ElementsAre("Rain – Theme - 1m00s.wav", "Rain – Theme - 30s.wav",
                                                     "Rain – Theme - Edit Notes.txt", "Rain – Theme - Intro.wav"));
        for (size_t i = 0; i < 3; ++i) {
            const Planes expected = TempEditRenderer::render(job.plans[i], job.audio, 48000, job.options);
            const auto [got, rate, format] = test::readAudio(job.done.files[i]);
            EXPECT_EQ(rate, 48000);
            EXPECT_EQ(format, SF_FORMAT_WAVEX | SF_FORMAT_PCM_24);
            ASSERT_EQ(got.size(), expected.size());
            ASSERT_EQ(got[0].size(), expected[0].size());
            EXPECT_EQ(job.done.seconds[i], double(expected[0].size()) / 48000);
            // Written in steps of 1 / (2^23 - 1), read back as 1 / 2^23: within half a step.
            for (size_t c = 0; c < got.size(); ++c) {
                for (size_t f = 0; f < got[c].size(); ++f) {
                    ASSERT_NEAR(double(got[c][f]) * 8388608, double(expected[c][f]) * 8388607, 0.501);
                }
            }
        }
        const AudioFileInfo info = AudioFileInfo::load(job.done.files[1]);
        EXPECT_EQ(info.bextDescription, "Brindlehum temp edit: Rain – Theme 30s. b1–2 ↷ b5–8 + ring");
        const uint32_t mask = channels == 1 ? 4 : channels == 2 ? 3 : 0;
        EXPECT_EQ(test::readBytes(job.done.files[1]).substr(40, 4), test::le32(mask));
    }
}

TEST(TempEditExporter, SheetSaysHowEachFileWasCut) {
    const TempFolder temp;
    Export job(temp.path());
    ASSERT_TRUE(job.write());
    EXPECT_EQ(job.done.notes, temp / "Rain – Theme - Edit Notes.txt");
    EXPECT_EQ(test::readBytes(job.done.notes),
              "one\ntwo and more\n\n"
              "Rain – Theme - Intro.wav    (0.42 s)\n    Intro b1–b4\n"
              "Rain – Theme - 30s.wav    (1.38 s)  · splice match 87%\n    b1–2 ↷ b5–8 + ring\n"
              "Rain – Theme - 1m00s.wav    (1.50 s)\n    Backtimed");
}

TEST(TempEditExporter, SheetHeadNamesSourceAnalysisAndPins) {
    MusicAnalysis analysis;
    analysis.grid.bpm = 120;
    analysis.grid.steady = true;
    analysis.grid.downbeats = {0, 2, 4, 6, 8};
    analysis.grid.duration = 10;
    analysis.tempo.meter.label = "4/4";
    analysis.key.tonic = "C";
    analysis.key.mode = "major";
    analysis.loudness.integrated = -14;
    analysis.loudness.truePeak = -1;
    analysis.structure.notes = {"first", "second"};
    EXPECT_THAT(
        TempEditExporter::notesHeader("Rain", "/music/Rain.wav", analysis, {0, 0, 1, 3, 3, 4, 4, false}),
        ElementsAre("Brindlehum temp edits: Rain", "Source: /music/Rain.wav",
                    "Analysis: 120.00 BPM 4/4 · steady · C · -14.0 LUFS · -1.0 dBTP",
                    "Pins: Intro to b1 · Loop b2–b3 · Ending from b4 · music ends at b5", "Note: first", "Note: second",
                    "Every edit is a bar-line splice with a 30 ms crossfade ending on the downbeat. Nothing is "
                    "time-stretched."));
}

TEST(TempEditExporter, FolderIsBesideTheSourceOnlyWhereItCanBeWritten) {
    using TempEditExporter::editsFolder;
    EXPECT_EQ(editsFolder("/tmp/a.b.wav", true, "/pulls"), "/tmp/a.b Edits");
    EXPECT_EQ(editsFolder("/tmp/a.b.wav", false, "/pulls"), "/pulls/Edits/a.b Edits");
    EXPECT_EQ(editsFolder("/nowhere/at/all/a.wav", true, "/pulls"), "/pulls/Edits/a Edits");
    // Nobody's rights, since all folders are open to root.
    const TempFolder temp;
    fs::permissions(temp.path(), fs::perms(0755));
    fs::create_directory(temp / "closed");
    fs::permissions(temp / "closed", fs::perms(0555));
    EXPECT_TRUE(test::Child([&] {
                    return test::becomeNobody() &&
                           editsFolder(temp / "closed/a.wav", true, "/pulls") == "/pulls/Edits/a Edits";
                }).succeeded());
}

// Whole files under final names, and what was there before; nothing else.
TEST(TempEditExporter, BrokenOffExportLeavesNoHalfFile) {
    struct Case {
        const char* what;
        std::function<bool(Export&)> run;
        const char* reason;  // of the Error; empty: stopped
    };
    const Case cases[] = {
        {"a disk that fills up in the second file",
         [](Export& job) {
             const test::FullDisk disk(200000);
             return job.write();
         },
         "Rain – Theme - 30s.wav: File too large"},
        {"a folder under the name of the second file",
         [](Export& job) {
             fs::remove(job.folder / "Rain – Theme - 30s.wav");
             fs::create_directory(job.folder / "Rain – Theme - 30s.wav");
             return job.write();
         },
         "Rain – Theme - 30s.wav: Is a directory"},
        {"a stop in the second file",
         [](Export& job) {
             std::stop_source stop;
             return job.write(
                 [&stop](size_t plan, const std::string&) {
                     if (plan == 1) { stop.request_stop(); }
                 },
                 stop.get_token());
         },
         ""},
    };
    for (const auto& [what, run, reason] : cases) {
        SCOPED_TRACE(what);
        const TempFolder temp;
        test::writeBytes(temp / "Rain – Theme - 30s.wav", "old");
        test::writeBytes(temp / "Rain – Theme - Edit Notes.txt", "old sheet");
        Export job(temp.path());
        std::string said;
        try {
            EXPECT_FALSE(run(job));
        } catch (const Error& error) { said = error.what(); }
        EXPECT_TRUE(said.ends_with(reason)) << said;
        EXPECT_EQ(said.empty(), std::string(reason).empty()) << said;
        EXPECT_THAT(namesIn(temp.path()),
                    ElementsAre("Rain – Theme - 30s.wav", "Rain – Theme - Edit Notes.txt", "Rain – Theme - Intro.wav"));
        EXPECT_EQ(test::readBytes(temp / "Rain – Theme - Edit Notes.txt"), "old sheet");
        const auto second = temp / "Rain – Theme - 30s.wav";
        EXPECT_TRUE(fs::is_directory(second) || test::readBytes(second) == "old");
        EXPECT_EQ(job.done.files.size(), 1U);
        EXPECT_TRUE(job.done.notes.empty());
    }
}

}  // namespace
}  // namespace brindlehum
