// The editor as its user meets it: open, edit, hear, save, and lose nothing.
#include "editor/model/editor_model.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <thread>

#include "base/error.h"
#include "dsp/resampler.h"
#include "editor/document/clipboard.h"
#include "support/audio_files.h"
#include "support/full_disk.h"
#include "support/music.h"
#include "support/platform/manual_audio.h"
#include "support/platform/manual_main_loop.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
using test::noise;
using Channels = EditOps::Channels;

class EditorTest : public testing::Test {
protected:
    static constexpr uint32_t block = 256;
    ManualMainLoop loop_;
    ManualAudioSystem audio_{loop_};
    test::TempFolder folder_;
    MemoryDefaults defaults_;
    SettingsStore settings_{defaults_};
    PlaybackEngine engine_{audio_, loop_, [](double) -> std::shared_ptr<BinauralStage> { throw Error("none"); }};
    std::unique_ptr<EditorModel> editor_ = make();

    std::unique_ptr<EditorModel> make() {
        auto editor = std::make_unique<EditorModel>(engine_, settings_, loop_, folder_ / "state");
        editor->document().journal().finish(20);
        loop_.drain();
        return editor;
    }
    DocumentModel& document() { return editor_->document(); }
    MusicModel& music() { return editor_->music(); }
    EditorTransport& transport() { return editor_->transport(); }
    std::string said() { return editor_->message().text().value_or(""); }

    void TearDown() override { EditorClipboard::clear(); }
    // Noise that 24 bits hold exactly.
    static Channels exact(int channels, size_t frames) {
        Channels out;
        for (int c = 0; c < channels; ++c) {
            auto x = noise(frames, uint32_t(c + 1));
            for (float& each : x) { each = std::round(each * 0.5F * 32768) / 32768; }
            out.push_back(std::move(x));
        }
        return out;
    }
    fs::path file(const std::string& name, const Channels& channels, int rate = 48000) {
        test::writeAudio(folder_ / name, channels, {.rate = rate});
        return folder_ / name;
    }
    // 88 GB of samples in memory, of which the disk holds none: half an hour of 64 channels of 8 bits.
    fs::path large(const std::string& name) {
        using namespace test;
        constexpr uint64_t bytes = 64 * 1799 * 192000ULL;
        const auto le64 = [](uint64_t value) { return le32(uint32_t(value)) + le32(uint32_t(value >> 32)); };
        const std::string format = le16(1) + le16(64) + le32(192000) + le32(64 * 192000) + le16(64) + le16(8);
        const std::string sizes = le64(bytes + 80) + le64(bytes) + le64(bytes / 64) + le32(0);
        const std::string head = "RF64" + le32(0xFFFFFFFF) + "WAVE" + riffChunk("ds64", sizes) +
                                 riffChunk("fmt ", format) + "data" + le32(0xFFFFFFFF);
        writeBytes(folder_ / name, head);
        fs::resize_file(folder_ / name, head.size() + bytes);
        return folder_ / name;
    }
    void settle() {
        for (int turn = 0; turn < 3; ++turn) {
            document().queue().drain();
            music().queue().drain();
            transport().queue().drain();
            document().journal().finish(20);
            loop_.drain();
        }
    }
    void open(const fs::path& path) {
        document().open(path);
        settle();
    }
    void select(int64_t lower, int64_t upper) { document().setSelection(FrameRange{lower, upper}); }
    // What the device channels play in the next blocks, after the fade-in of a start.
    Channels heard(int blocks) {
        audio_.pump(block);
        Channels out;
        for (int i = 0; i < blocks; ++i) {
            const auto planes = audio_.pump(block);
            out.resize(planes.size());
            for (size_t c = 0; c < planes.size(); ++c) {
                out[c].insert(out[c].end(), planes[c].begin(), planes[c].end());
            }
            std::this_thread::yield();
        }
        return out;
    }
};

TEST_F(EditorTest, EditsAndSavesWhatItShows) {
    const Channels samples = exact(2, 48000);
    open(file("Rain.wav", samples));
    ASSERT_EQ(document().sound().gather(), samples);
    select(1000, 3000);
    document().cut();
    EXPECT_EQ(std::pair(document().cursor(), document().total()), std::pair(int64_t(1000), int64_t(46000)));
    EXPECT_FALSE(document().selection());
    EXPECT_EQ(document().view(), VisibleRange::all(46000)) << "a view of everything stays one";
    document().setCursor(0);
    document().paste();
    EXPECT_EQ(document().selection(), (FrameRange{0, 2000}));
    document().undo();
    document().undo();
    EXPECT_FALSE(document().isDirty());
    document().redo();
    EXPECT_TRUE(document().isDirty());
    EXPECT_EQ(document().proposedName(), folder_ / "Rain edit.wav");

    document().saveAs(document().proposedName());
    settle();
    EXPECT_FALSE(document().isDirty());
    EXPECT_EQ(said(), "Saved Rain edit.wav");
    EXPECT_EQ(test::readAudio(folder_ / "Rain edit.wav").planes, document().sound().gather());
    EXPECT_EQ(document().doc()->url, folder_ / "Rain.wav");
    // Over the file that is open, and into a folder that isn't there.
    document().saveAs(folder_ / "Rain.wav");
    settle();
    EXPECT_EQ(test::readAudio(folder_ / "Rain.wav").planes, document().sound().gather());
    document().trim();
    document().apply("reverse");
    EXPECT_TRUE(document().isDirty());
    document().saveAs(folder_ / "none/Rain.wav");
    settle();
    EXPECT_TRUE(document().isDirty());
    EXPECT_TRUE(editor_->message().isProblem());
}

TEST_F(EditorTest, AFileThatCannotBeOpenedLeavesTheDocumentAsItIs) {
    open(file("a.wav", exact(1, 5000)));
    select(10, 2000);
    document().cut();
    std::ofstream(folder_ / "b.wav") << "no sound";
    test::writeAudio(folder_ / "long.wav", {std::vector<float>(1800 * 2000)}, {.rate = 2000});
    test::writeAudio(folder_ / "almost.wav", {std::vector<float>(1800 * 2000 - 1)}, {.rate = 2000});
    ASSERT_EQ(AudioFileInfo::load(large("large.wav")).frames, 1799 * 192000);
    for (const auto& [name, text] :
         {std::pair("b.wav", ""), std::pair("long.wav", "Files over 30 minutes don't open in the editor"),
          std::pair("large.wav", "File too large to load")}) {
        open(folder_ / name);
        EXPECT_EQ(document().total(), 3010);
        EXPECT_TRUE(document().isDirty());
        EXPECT_TRUE(said().ends_with(text)) << said();
    }
    open(folder_ / "almost.wav");
    EXPECT_EQ(document().total(), 1800 * 2000 - 1);
    EXPECT_FALSE(document().isDirty());
    EXPECT_TRUE(document().history().undoName().empty());
}

TEST_F(EditorTest, ASaveOnAFullDiskIsSaidAndNothingIsLost) {
    const Channels samples = exact(2, 20000);
    open(file("Rain.wav", samples));
    select(0, 5000);
    document().cut();
    settle();
    const auto names = [&] { return std::set(fs::directory_iterator(folder_.path()), fs::directory_iterator()); };
    const auto before = names();
    for (const char* name : {"Rain.wav", "Rain edit.wav"}) {
        const test::FullDisk full(30000);
        bool wasDone = false;
        document().saveAs(folder_ / name, [&] { wasDone = true; });
        settle();
        EXPECT_FALSE(wasDone);
        EXPECT_TRUE(document().isDirty());
        EXPECT_TRUE(editor_->message().isProblem());
        EXPECT_TRUE(said().starts_with("Couldn't write " + (folder_ / name).string() + ": ")) << said();
        EXPECT_EQ(names(), before) << "no part of it is left";
    }
    EXPECT_EQ(test::readAudio(folder_ / "Rain.wav").planes, samples);
    document().saveAs(folder_ / "Rain.wav");
    settle();
    EXPECT_FALSE(document().isDirty());
}

TEST_F(EditorTest, UnsavedEditsComeBackAfterACrash) {
    open(file("Rain.wav", exact(2, 150000)));
    select(1000, 3000);
    document().cut();
    document().apply("fade-in");
    document().undo();
    const Channels before = document().sound().gather();
    settle();
    editor_.reset();  // as a crash: nobody closed the document
    editor_ = make();
    ASSERT_EQ(document().abandoned().size(), 1U);
    document().recover();
    settle();
    EXPECT_EQ(document().sound().gather(), before);
    EXPECT_EQ(document().history().redoName(), "Fade In");
    EXPECT_TRUE(document().isDirty());
    document().undo();
    EXPECT_FALSE(document().isDirty());
    document().redo();
    settle();
    editor_ = nullptr;
    editor_ = make();
    ASSERT_EQ(document().abandoned().size(), 1U) << "and a second time";
    document().discardAbandoned();
    settle();
    open(folder_ / "Rain.wav");
    select(0, 10);
    document().cut();
    document().close();
    settle();
    EXPECT_TRUE(fs::is_empty(folder_ / "state"));
}

TEST_F(EditorTest, LongWorkIsDroppedWhenTheSoundMovesOn) {
    open(file("Rain.wav", exact(2, 20000), 8000));
    select(100, 9000);
    document().run(Macro::verbTail);
    EXPECT_EQ(document().busy()->text, "Ringing it out…");
    document().silence();
    settle();
    EXPECT_EQ(document().total(), 20000);
    EXPECT_EQ(document().history().undoName(), "Silence");
    EXPECT_EQ(said(), "Verb Tail was dropped: the sound was edited meanwhile");
    document().run(Macro::verbTail);
    settle();
    EXPECT_EQ(document().total(), 20000 + 4 * 8000);
    EXPECT_FALSE(document().busy());
    select(0, 10);
    document().run(Macro::seamlessLoop);
    EXPECT_EQ(said(), tooShortToLoop);
    select(0, 9000);
    document().run(Macro::seamlessLoop);
    EXPECT_EQ(document().total(), 9000);
    EXPECT_TRUE(transport().loops());
}

TEST_F(EditorTest, HearsAFileBesideTheDocumentOfAnyFormAtTheRightSpeed) {
    open(file("Rain.wav", exact(2, 60000)));
    for (const auto& [channels, rate] : {std::pair(1, 48000), {2, 48000}, {6, 48000}, {2, 24000}}) {
        const Channels samples = exact(channels, 20000);
        const fs::path take = file("Take " + std::to_string(channels * rate) + ".wav", samples, rate);
        transport().audition(take);
        settle();
        settle();
        ASSERT_EQ(transport().auditioned(), take.filename().string());
        const Channels out = heard(8);
        for (size_t c = 0; c < 2; ++c) {
            const auto& source = samples[channels == 1 ? 0 : c];
            const auto whole = rate == 48000 ? source : Resampler::convert(source, rate, 48000);
            const std::vector<float> expected(whole.begin() + block, whole.begin() + 9 * block);
            EXPECT_EQ(out[c], expected) << channels << " at " << rate;
        }
        transport().stop();
        EXPECT_FALSE(transport().auditioned());
    }
}

TEST_F(EditorTest, PlaysTheDocumentExactlyWithSoloMuteAndLoop) {
    const Channels samples = exact(2, 60000);
    open(file("Rain.wav", samples));
    document().setCursor(5000);
    transport().play();
    settle();
    ASSERT_TRUE(transport().isPlaying());
    Channels out = heard(8);
    EXPECT_EQ(out[0], EditOps::slice(samples, 5000 + block, 5000 + 9 * block)[0]);
    transport().setMute(0, true);
    out = heard(4);
    EXPECT_EQ(out[0], std::vector<float>(4 * block));
    EXPECT_EQ(out[1], EditOps::slice(samples, 5000 + 10 * block, 5000 + 14 * block)[1]);
    transport().setSolo(0, true);
    for (const auto& plane : heard(2)) { EXPECT_EQ(plane, std::vector<float>(2 * block)); }
    transport().stop();
    EXPECT_EQ(transport().playhead().wholeFrame(), 5000);
    transport().setSolo(0, false);
    transport().setMute(0, false);

    select(2000, 3000);
    transport().setLoops(true);
    transport().play();
    settle();
    out = heard(12);
    for (size_t i = 0; i < out[0].size(); ++i) { ASSERT_EQ(out[0][i], samples[0][2000 + (i + block) % 1000]) << i; }
    // Nothing is left to play.
    select(0, 60000);
    document().cut();
    EXPECT_FALSE(transport().isPlaying());
    document().undo();
    transport().play();
    settle();
    EXPECT_TRUE(transport().isPlaying());
    // Another takes the device.
    EngineSeat other(engine_, {});
    other.take();
    EXPECT_FALSE(transport().isPlaying());
}

TEST_F(EditorTest, FindsBarsAgainAfterAnEditAndKeepsWhatTheUserSet) {
    open(file("Groove.wav", {test::clickPiece(40)}, int(test::musicRate)));
    ASSERT_TRUE(music().analysis());
    EXPECT_NEAR(music().analysis()->grid.bpm, 120, 0.1);
    ASSERT_FALSE(music().plans().empty());
    // A bar line two beats off, set by hand: cut six seconds before it, and it comes along.
    const auto at = [](double seconds) { return int64_t(seconds * test::musicRate); };
    std::map<fs::path, GivenBars> kept;
    music().keepBars = [&](const fs::path& path, const GivenBars& given) { kept[path] = given; };
    music().findBars = [&](const fs::path& path) { return kept[path]; };
    music().setDownbeat(at(9));
    settle();
    const auto isBar = [&](double seconds) {
        return std::ranges::any_of(music().boundaries(), [&](double b) { return std::abs(b - seconds) < 0.02; });
    };
    EXPECT_TRUE(isBar(9) && !isBar(10));
    select(at(2), at(8.25));
    document().cut();
    EXPECT_TRUE(music().isStale());
    EXPECT_TRUE(music().plans().empty()) << "they would cut in the wrong places";
    loop_.advance(MusicModel::restSeconds + 0.01);
    settle();
    EXPECT_FALSE(music().isStale());
    EXPECT_TRUE(isBar(2.75)) << "the bar line of the user, 6.25 s earlier";
    document().undo();
    loop_.advance(MusicModel::restSeconds + 0.01);
    settle();
    EXPECT_TRUE(isBar(9));
    document().redo();
    music().setTempo(60);
    EXPECT_EQ(kept.size(), 1U);
    EXPECT_FALSE(kept.begin()->second.bpm) << "what is given to an edited sound isn't kept for its file";
    settle();
    open(folder_ / "Groove.wav");
    EXPECT_TRUE(isBar(9)) << "known from earlier";
    // A pin that is dragged changes the plans at once.
    const auto before = music().plans().size();
    const Pins pins = *music().pins();
    music().movePin(PinKind::endingStart, at(30));
    EXPECT_NE(*music().pins(), pins);
    EXPECT_GT(before, 0U);
    EXPECT_NEAR(double(music().frame(music().pins()->endingStart)), double(at(31)), 0.02 * test::musicRate);
    music().resetPins();
    EXPECT_EQ(*music().pins(), pins);
    music().selectBar(at(9.5));
    EXPECT_NEAR(double(document().selection()->lower), double(at(9)), 0.02 * test::musicRate);
}

TEST_F(EditorTest, TheClickSoundsPastMute) {
    open(file("Groove.wav", {test::clickPiece(20)}, int(test::musicRate)));
    ASSERT_TRUE(music().analysis());
    transport().setMute(0, true);
    transport().play(int64_t(3.95 * test::musicRate));  // just before a bar
    settle();
    const auto loudest = [&] {
        float peak = 0;
        for (const auto& plane : heard(28)) {
            for (const float x : plane) { peak = std::max(peak, std::abs(x)); }
        }
        return peak;
    };
    EXPECT_EQ(loudest(), 0);
    transport().setClick(true);
    settle();
    EXPECT_GT(loudest(), 0.2F);
}

TEST_F(EditorTest, WritesTheEditsOfTheEditedSound) {
    settings_.change([](AppSettings& s) { s.tempEditsBesideSource = true; });
    open(file("Groove.wav", {test::clickPiece(60)}, int(test::musicRate)));
    ASSERT_FALSE(music().plans().empty());
    music().makeTempEdits();
    ASSERT_TRUE(loop_.runUntil([&] { return !music().writing(); }));
    ASSERT_TRUE(music().lastExport());
    EXPECT_EQ(music().lastExport()->files.size(), music().plans().size());
    for (const auto& path : music().lastExport()->files) { EXPECT_TRUE(fs::exists(path)); }
}

}  // namespace
}  // namespace brindlehum
