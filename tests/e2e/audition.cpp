// The application plays on a real sound server; its sinks' monitors are compared with the files.
#include "listening_test.h"
#include "marks.h"

namespace brindlehum::test {
namespace {

using AuditionOnPipeWire = ListeningTest;

// Samples of `heard` that differ from the file, over a second behind the fade-in of the first block.
size_t differences(const Planes& heard) {
    const auto begin = std::find_if(heard[0].begin(), heard[0].end(), [](float x) { return x != 0; });
    const size_t first = size_t(begin - heard[0].begin());
    size_t wrong = 0;
    for (size_t c = 0; c < heard.size(); ++c) {
        for (size_t i = block; i < block + rate; ++i) {
            wrong += first + i >= heard[c].size() || heard[c][first + i] != mark(c, i);
        }
    }
    return wrong;
}

TEST_F(AuditionOnPipeWire, SixteenChannelsArriveBitExactOnTheirOutputs) {
    writeAudio(folder_ / "room.wav", marks(16, 2 * rate));
    load(folder_ / "room.wav");
    ASSERT_EQ(player_.sound().source()->displayName(), "9.1.6");
    expectCleanOnce([&] {
        SinkRecorder recorder("sink16", 16, 20);
        playFrom(0);
        EXPECT_EQ(app_.engine().deviceName(), "sink16");
        EXPECT_EQ(app_.engine().deviceChannels(), 16);
        EXPECT_TRUE(until([&] { return recorder.soundingFrames() >= size_t(rate + 2 * block); }));
        player_.stopAndReturn();
        const size_t wrong = differences(recorder.stop());
        return wrong == 0 ? std::string() : std::to_string(wrong) + " samples differ";
    });
    EXPECT_FALSE(player_.message().text());
}

// Each change is made while a tone plays on sixteen channels.
struct Change {
    const char* name;
    std::function<void(PlayerModel&, const std::function<void(int)>& profile)> make;
};

TEST_F(AuditionOnPipeWire, NoChangeClicksWhileASoundPlays) {
    const std::vector<Change> changes = {
        {"seeks", [](PlayerModel& p, auto&) { p.transport().seek(77777); }},
        {"a seek to the very start", [](PlayerModel& p, auto&) { p.transport().seek(0); }},
        {"a volume jump", [](PlayerModel& p, auto&) { p.listening().setVolumeDB(-18); }},
        {"silence", [](PlayerModel& p, auto&) { p.listening().setVolumeDB(-60); }},
        {"sound again", [](PlayerModel& p, auto&) { p.listening().setVolumeDB(-6); }},
        {"another reading of the channels",
         [](PlayerModel& p, auto&) { p.sound().setFormatOverride(SourceFormat::ambisonic(3, AmbiNorm::sn3d)); }},
        {"a turned sound field",
         [](PlayerModel& p, auto&) {
             p.listening().setRotation({120, 10, -20});
         }},
        {"headphones", [](PlayerModel&, auto& profile) { profile(ListeningTest::headphones); }},
        {"a turned sound field on headphones",
         [](PlayerModel& p, auto&) {
             p.listening().setRotation({-60, 0, 0});
         }},
        {"a bed on headphones", [](PlayerModel& p, auto&) { p.sound().setFormatOverride(std::nullopt); }},
        {"back to the room", [](PlayerModel&, auto& profile) { profile(ListeningTest::room); }},
        {"volume up again", [](PlayerModel& p, auto&) { p.listening().setVolumeDB(0); }},
        // A whole number of periods, so that the join itself is smooth.
        {"a loop",
         [](PlayerModel& p, auto&) {
             p.transport().setLoop(true);
             p.transport().select(FrameRange{20 * tonePeriod, 70 * tonePeriod});
         }},
        {"the loop undone", [](PlayerModel& p, auto&) { p.transport().clearSelection(); }},
        {"a stop", [](PlayerModel& p, auto&) { p.stopAndReturn(); }},
    };
    load(toneFile(16, 60));
    expectCleanOnce([&] {
        player_.transport().setLoop(false);
        SinkRecorder recorder("sink16", 16, 60);
        playFrom(0);
        listen(recorder, 8 * block);
        for (const Change& change : changes) {
            change.make(player_, [&](int profile) { select(Profile(profile)); });
            listen(recorder, 24 * block);
            EXPECT_FALSE(player_.message().text()) << change.name << ": " << *player_.message().text();
            EXPECT_EQ(app_.engine().deviceName(), "sink16") << change.name;
        }
        return clickIn(recorder.stop(), "all changes");
    });
}

}  // namespace
}  // namespace brindlehum::test
