// TempEditExporter: folders, sheets, files as other readers see them, and what a broken-off export leaves.
#include "edits/temp_edit_exporter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sndfile.h>

#include "audio/probe/audio_file_info.h"
#include "base/error.h"
#include "base/file_replacement.h"
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

constexpr const char* record = ".brindlehum-edits.json";

// Three plans over two seconds of noise.
struct Export {
    explicit Export(fs::path where, int channels = 2)
        : folder(std::move(where)), audio(test::noisePlanes(channels, 96000)), plans(3) {
        plans[0] = {"Intro", EditPlan::Kind::piece, {{0, 20000}}, {}, {}, 0, 0, "Intro b1–b4", 1, false};
        plans[1] = {"30s",
                    EditPlan::Kind::cutdown,
                    {{0, 30000}, {60000, 96000, 24000}},
                    30,
                    {},
                    0,
                    0,
                    "b1–2 ↷ b5–8 + ring",
                    0.874,
                    false};
        plans[2] = {"1m00s", EditPlan::Kind::backtimed, {{5000, 96000}}, 60, 1.5, 480, 0, "Backtimed", 0.999, false};
    }
    bool write(const TempEditExporter::Progress& progress = {}, const std::stop_token& stop = {}) {
        return TempEditExporter::write(
            {"/music/Rain – Theme.wav", folder, "Rain – Theme", header, plans, Sound(audio), 48000, options}, done,
            progress, stop);
    }
    fs::path folder;
    Planes audio;
    std::vector<EditPlan> plans;
    std::vector<std::string> header = {"Brindlehum temp edits: Rain", "two\nand more"};
    TempEditOptions options;
    Result done;
};

TEST(TempEditExporter, FilesReadBackAsRendered) {
    for (const int channels : {1, 2, 6}) {
        const TempFolder temp;
        Export job(temp / "deep/er/Rain Edits", channels);
        ASSERT_TRUE(job.write());
        ASSERT_EQ(job.done.files.size(), 3U);
        EXPECT_THAT(namesIn(job.folder), ElementsAre(record, "Rain – Theme - 1m00s.wav", "Rain – Theme - 30s.wav",
                                                     "Rain – Theme - Edit Notes.txt", "Rain – Theme - Intro.wav"));
        for (size_t i = 0; i < 3; ++i) {
            const Planes expected = TempEditRenderer::render(job.plans[i], Sound(job.audio), 48000, job.options);
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
    EXPECT_EQ(
        test::readBytes(job.done.notes),
        "Brindlehum temp edits: Rain\ntwo and more\nWhere bars don't reach a length, an edit enters on another beat "
        "(b12.3 is the third beat of bar 12) or pauses on a bar line.\n\n"
        "Rain – Theme - Intro.wav    (0.42 s)\n    Intro b1–b4  (0:00.000–0:00.417)\n"
        "Rain – Theme - 30s.wav    (1.88 s)  · splice match 87%  · 28.1 s short\n    b1–2 ↷ b5–8 + ring"
        "  (0:00.000–0:00.625 · pause · 0:01.250–0:02.000)\n"
        "Rain – Theme - 1m00s.wav    (1.50 s)  · 58.5 s short\n    Backtimed  (0:00.104–0:02.000)");
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
        ElementsAre(
            "Brindlehum temp edits: Rain", "Source: /music/Rain.wav",
            "Analysis: 120.00 BPM 4/4 · steady · C · -14.0 LUFS · -1.0 dBTP",
            "Pins: Intro to b1 (0:00.000) · Loop b2–b3 (0:02.000–0:06.000) · Ending from b4 (0:06.000) · music ends at "
            "b5 (0:08.000)",
            "Note: first", "Note: second",
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
        {"a file that is being written elsewhere",
         [](Export& job) {
             const FileReplacement other(job.folder / "Rain – Theme - 30s.wav");
             return job.write();
         },
         "Rain – Theme - 30s.wav: it is being written elsewhere"},
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
        Export job(temp.path());
        ASSERT_TRUE(job.write());
        for (const char* name : {"Intro", "1m00s"}) {
            fs::remove(temp / ("Rain – Theme - " + std::string(name) + ".wav"));
        }
        const auto before = [&](const char* end) {
            return test::readBytes(temp / ("Rain – Theme - " + std::string(end)));
        };
        const std::string oldEdit = before("30s.wav");
        const std::string oldSheet = before("Edit Notes.txt");
        job.audio = test::noisePlanes(2, 96000, 7);
        std::string said;
        try {
            EXPECT_FALSE(run(job));
        } catch (const Error& error) { said = error.what(); }
        EXPECT_TRUE(said.ends_with(reason)) << said;
        EXPECT_EQ(said.empty(), std::string(reason).empty()) << said;
        EXPECT_THAT(namesIn(temp.path()), ElementsAre(record, "Rain – Theme - 30s.wav", "Rain – Theme - Edit Notes.txt",
                                                      "Rain – Theme - Intro.wav"));
        EXPECT_EQ(before("Edit Notes.txt"), oldSheet);
        EXPECT_TRUE(before("30s.wav") == oldEdit);
        EXPECT_EQ(job.done.files.size(), 1U);
        EXPECT_TRUE(job.done.notes.empty());
    }
}

// A second export over the first one, whose 30s edit or sheet something has happened to.
TEST(TempEditExporter, ReplacesOnlyFilesThatItWroteAndNobodyChanged) {
    using Change = std::function<void(const fs::path& edit, const fs::path& sheet)>;
    const auto later = [](const fs::path& file) {
        fs::last_write_time(file, fs::last_write_time(file) + std::chrono::minutes(1));
    };
    const auto forget = [](const fs::path& file) { fs::remove(file.parent_path() / record); };
    const struct {
        const char* what;
        Change change;
        bool keepsEdit, keepsSheet;  // what was there
    } cases[] = {
        {"nothing", [](auto&, auto&) {}, false, false},
        {"a crash before the record", [&](auto& edit, auto&) { forget(edit); }, false, false},
        {"a recording under the name", [](auto& edit, auto&) { test::writeAudio(edit, test::noisePlanes(2, 99)); },
         true, false},
        {"the same, and no record",
         [&](auto& edit, auto&) { test::writeAudio(edit, test::noisePlanes(2, 99)), forget(edit); }, true, false},
        {"an edit changed in place", [&](auto& edit, auto&) { later(edit); }, true, false},
        {"an edit made longer",
         [&](auto& edit, auto&) { test::writeBytes(edit, test::readBytes(edit) + "more"), forget(edit); }, true, false},
        {"a link under the name",
         [](auto& edit, auto&) {
             fs::rename(edit, edit.parent_path() / "mine.wav");
             fs::create_symlink("mine.wav", edit);
         },
         true, false},
        {"a folder under the name", [](auto& edit, auto&) { fs::remove(edit), fs::create_directories(edit / "mine"); },
         true, false},
        {"own words in the sheet",
         [&](auto&, auto& sheet) { test::writeBytes(sheet, test::readBytes(sheet) + "\nTry it"), forget(sheet); },
         false, true},
    };
    for (const auto& [what, change, keepsEdit, keepsSheet] : cases) {
        SCOPED_TRACE(what);
        const TempFolder temp;
        Export job(temp.path());
        ASSERT_TRUE(job.write());
        const fs::path edit = job.done.files[1], sheet = job.done.notes;
        change(edit, sheet);
        const std::string editBefore = fs::is_directory(edit) ? "" : test::readBytes(edit);
        const std::string sheetBefore = test::readBytes(sheet);
        job.audio = test::noisePlanes(2, 96000, 7);
        job.plans[1].map = "new";
        for (int run = 0; run < 2; ++run) {
            ASSERT_TRUE(job.write());
            EXPECT_EQ(job.done.files[1], temp / (keepsEdit ? "Rain – Theme - 30s 2.wav" : "Rain – Theme - 30s.wav"));
            EXPECT_EQ(job.done.notes,
                      temp / (keepsSheet ? "Rain – Theme - Edit Notes 2.txt" : "Rain – Theme - Edit Notes.txt"));
            EXPECT_EQ(fs::is_directory(edit) || test::readBytes(edit) == editBefore, keepsEdit);
            EXPECT_EQ(test::readBytes(sheet) == sheetBefore, keepsSheet);
        }
    }
}

TEST(TempEditExporter, LinkUnderATemporaryNameIsNotFollowed) {
    const TempFolder temp;
    const TempFolder outside;
    test::writeBytes(outside / "mine", "precious");
    fs::create_symlink(outside / "mine", temp / ".Rain – Theme - Intro.wav.bh-tmp");
    Export job(temp.path());
    EXPECT_THROW(job.write(), Error);
    EXPECT_EQ(test::readBytes(outside / "mine"), "precious");
}

TEST(TempEditExporter, FolderWithAnotherPiecesEditsIsLeftToThem) {
    using TempEditExporter::folderFor;
    const TempFolder temp;
    Export job(temp / "Rain – Theme Edits");
    EXPECT_EQ(folderFor(temp / "Rain – Theme.flac", job.folder), job.folder) << "free";
    ASSERT_TRUE(job.write());
    EXPECT_EQ(folderFor(temp / "Rain – Theme.wav", job.folder), job.folder) << "moved together with its piece";
    EXPECT_EQ(folderFor("/music/Rain – Theme.wav", job.folder), job.folder);
    EXPECT_EQ(folderFor("/other/Rain – Theme.wav", job.folder), temp / "Rain – Theme.wav Edits");
    fs::remove(job.folder / record);
    test::writeBytes(job.done.notes, "Brindlehum temp edits: x\nSource: /music/Rain – Theme.wav\n");
    EXPECT_EQ(folderFor(temp / "Rain – Theme.flac", job.folder), temp / "Rain – Theme.flac Edits");
    Export second(temp / "Rain – Theme.flac Edits");
    ASSERT_TRUE(second.write());
    EXPECT_EQ(folderFor("/other/Rain – Theme.flac", job.folder), temp / "Rain – Theme.flac Edits 2");
}

}  // namespace
}  // namespace brindlehum
