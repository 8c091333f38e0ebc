// The editor plays on a real sound server; its sinks' monitors are compared with the document.
#include "listening_test.h"
#include "marks.h"
#include "support/music.h"

namespace brindlehum::test {
namespace {

class EditorOnPipeWire : public ListeningTest {
protected:
    EditorModel& editor_ = app_.editor();
    DocumentModel& document_ = editor_.document();
    EditorTransport& transport_ = editor_.transport();

    void open(const std::filesystem::path& file) {
        document_.open(file);
        ASSERT_TRUE(until([&] { return document_.doc() && document_.doc()->url == file; }));
    }
    void play() {
        transport_.play();
        ASSERT_TRUE(until([&] { return transport_.isPlaying(); })) << editor_.message().text().value_or("no message");
    }
    // A tone would hide where a fade begins: each channel holds one value.
    void openConstants(const std::vector<float>& values) {
        Planes planes;
        for (const float value : values) { planes.emplace_back(size_t(30 * rate), value); }
        writeAudio(folder_ / "constants.wav", planes);
        open(folder_ / "constants.wav");
    }
};

size_t onset(const std::vector<float>& plane, size_t from = 0) {
    return size_t(std::find_if(plane.begin() + std::ptrdiff_t(from), plane.end(), [](float x) { return x != 0; }) -
                  plane.begin());
}

TEST_F(EditorOnPipeWire, PlaysTheDocumentToTheSampleAndLoopsWithoutASeam) {
    constexpr int channels = 16;
    constexpr int64_t total = 3 * rate;
    writeAudio(folder_ / "room.wav", marks(channels, size_t(total)));
    open(folder_ / "room.wav");
    const struct {
        const char* name;
        int64_t cursor;
        std::optional<FrameRange> selection;
        bool loops;
        int64_t frames;  // that are heard; 0: without end
    } cases[] = {
        {"from the cursor to the end", total - rate - 77, {}, false, rate + 77},
        {"a selection", 5, FrameRange{12345, 12345 + 40001}, false, 40001},
        {"a selection in a loop", 5, FrameRange{12345, 12345 + 10007}, true, 0},
    };
    for (const auto& c : cases) {
        document_.setCursor(c.cursor);
        document_.setSelection(c.selection);
        transport_.setLoops(c.loops);
        expectCleanOnce([&]() -> std::string {
            SinkRecorder recorder("sink16", channels, 20);
            play();
            if (c.loops) {
                listen(recorder, 5 * 10007 + 4 * block);
                transport_.stop();
            } else {
                EXPECT_TRUE(until([&] { return !transport_.isPlaying(); }));
                listen(recorder, 4 * block);
            }
            const Planes heard = recorder.stop();
            const size_t first = onset(heard[0]);
            const int64_t count = c.loops ? 5 * 10007 : c.frames;
            const FrameRange range = c.selection.value_or(FrameRange{c.cursor, total});
            size_t wrong = 0;
            for (size_t at = block; at < size_t(count); ++at) {  // behind the fade-in of the first block
                const size_t frame = size_t(range.lower) + at % size_t(range.length());
                for (size_t channel = 0; channel < heard.size(); ++channel) {
                    wrong += first + at >= heard[channel].size() || heard[channel][first + at] != mark(channel, frame);
                }
            }
            const bool endsInTime = c.loops || onset(heard[0], first + size_t(count)) == heard[0].size();
            if (wrong == 0 && endsInTime) { return ""; }
            return c.name + (": " + std::to_string(wrong)) + " samples differ" + (endsInTime ? "" : ", and it goes on");
        });
    }
}

TEST_F(EditorOnPipeWire, SoloAndMuteFadeOverOneBlock) {
    openConstants({0.5F, 0.25F});
    const struct {
        const char* name;
        std::function<void(EditorTransport&)> make;
        size_t fades;
        float from, to;
    } changes[] = {
        {"mute", [](EditorTransport& t) { t.setMute(0, true); }, 0, 0.5F, 0},
        {"unmute", [](EditorTransport& t) { t.setMute(0, false); }, 0, 0, 0.5F},
        {"solo", [](EditorTransport& t) { t.setSolo(0, true); }, 1, 0.25F, 0},
        {"no solo", [](EditorTransport& t) { t.setSolo(0, false); }, 1, 0, 0.25F},
    };
    expectCleanOnce([&]() -> std::string {
        SinkRecorder recorder("sink16", 16, 20);
        play();
        listen(recorder, 8 * block);
        std::vector<size_t> marksOfChanges;
        for (const auto& change : changes) {
            marksOfChanges.push_back(recorder.frames());
            change.make(transport_);
            listen(recorder, 8 * block);
        }
        transport_.stop();
        const Planes heard = recorder.stop();
        for (size_t i = 0; i < std::size(changes); ++i) {
            const auto& change = changes[i];
            const std::vector<float>& fading = heard[change.fades];
            const std::vector<float>& other = heard[1 - change.fades];
            size_t at = marksOfChanges[i];
            while (at < fading.size() && std::abs(fading[at] - change.from) < 1e-6F) { ++at; }
            for (size_t n = 0; n < 2 * block; ++n) {
                const float share = std::min(float(n + 1) / block, 1.0F);
                const float wanted = change.from + share * (change.to - change.from);
                const bool fits = at + n < fading.size() && std::abs(fading[at + n] - wanted) < 1e-5F &&
                                  std::abs(other[at + n] - (change.fades == 0 ? 0.25F : 0.5F)) < 1e-6F;
                if (!fits) { return change.name + (": frame " + std::to_string(n)) + " of the fade"; }
            }
        }
        return "";
    });
}

TEST_F(EditorOnPipeWire, ClicksOnTheBeatsPastMute) {
    // Beats of 120 BPM in the first channel, which is muted; the second shows where the document begins.
    Planes planes = {std::vector<float>(size_t(24 * rate)), std::vector<float>(size_t(24 * rate), 0.25F)};
    for (int beat = 0; beat < 47; ++beat) {
        addTone(planes[0], 0.25 + 0.5 * beat, 2500, 0.5, 0.02, 0, rate);
        if (beat % 4 == 0) { addTone(planes[0], 0.25 + 0.5 * beat, 80, 0.4, 0.06, 0.02, rate); }
    }
    writeAudio(folder_ / "beats.wav", planes);
    open(folder_ / "beats.wav");
    ASSERT_TRUE(until([&] { return editor_.music().analysis() && !editor_.music().isStale(); }));
    const std::vector<double>& beats = editor_.music().analysis()->grid.beats;
    transport_.setClick(true);
    transport_.setMute(0, true);
    expectCleanOnce([&]() -> std::string {
        SinkRecorder recorder("sink16", 16, 20);
        play();
        listen(recorder, 4 * rate);
        transport_.stop();
        const Planes heard = recorder.stop();
        const size_t begin = onset(heard[1]);
        // Where the first channel is muted, only the click is left on its output, or on the centre.
        const std::vector<float>& clicks = onset(heard[0]) < heard[0].size() ? heard[0] : heard[2];
        int found = 0;
        for (const double beat : beats) {
            if (beat < 0.05 || beat > 3.5) { continue; }
            const auto frame = size_t(std::llround(beat * rate));
            // A click begins with a sine's 0; nothing else sounds for some time before it.
            const auto late = int64_t(onset(clicks, begin + frame - 1000)) - int64_t(begin + frame);
            if (late < 0 || late > 1) { return "a click " + std::to_string(late) + " frames late"; }
            EXPECT_LT(std::abs(std::remainder(beat - 0.25, 0.5)), 0.005) << "the beat itself";
            ++found;
        }
        return found >= 6 ? "" : "too few beats";
    });
}

TEST_F(EditorOnPipeWire, PlayerAndEditorTakeOverFromEachOtherWithoutAClick) {
    const auto file = toneFile(2, 30);
    load(file);
    open(file);
    expectCleanOnce([&] {
        SinkRecorder recorder("sink16", 16, 30);
        playFrom(0);
        listen(recorder, 16 * block);
        for (int round = 0; round < 2; ++round) {
            document_.setCursor(77777 + round);
            play();
            EXPECT_FALSE(player_.isPlaying());
            listen(recorder, 16 * block);
            playFrom(5000 + round);
            EXPECT_FALSE(transport_.isPlaying());
            listen(recorder, 16 * block);
        }
        player_.stopAndReturn();
        listen(recorder, 4 * block);
        return clickIn(recorder.stop(), "the handovers");
    });
}

TEST_F(EditorOnPipeWire, TheDefaultDeviceReplacesAnUnpluggedOne) {
    server_.setDefaultSink("sink2");
    open(toneFile(2, 30));
    expectCleanOnce([&]() -> std::string {
        SinkRecorder to("sink2", 2, 20);
        play();
        EXPECT_TRUE(until([&] { return transport_.playhead().wholeFrame() > 4 * block; }));
        const int64_t before = transport_.playhead().wholeFrame();
        server_.removeSink("sink16");
        EXPECT_TRUE(until([&] { return to.soundingFrames() >= 24 * block; }));
        EXPECT_TRUE(transport_.isPlaying());
        EXPECT_GE(transport_.playhead().wholeFrame(), before);
        EXPECT_EQ(editor_.message().text(), "Sound now goes to Pair, no longer to sink16");
        const Planes heard = to.stop();
        server_.addSink("sink16", 16);
        SinkRecorder back("sink16", 16, 20);
        EXPECT_TRUE(until([&] { return back.soundingFrames() >= 8 * block; }));
        transport_.stop();
        return clickIn(heard, "the default device");
    });
}

}  // namespace
}  // namespace brindlehum::test
