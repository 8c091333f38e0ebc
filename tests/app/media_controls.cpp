// The desktop's media keys over a real player.
#include "app/media_controls.h"

#include "app_fixture.h"

namespace brindlehum {
namespace {

using Playback = MediaStatus::Playback;

class MediaKeys : public test::AppTest {
protected:
    ScriptedMedia& media_ = session_.media;
    void SetUp() override {
        app_.start(0);
        app_.settings().change([](AppSettings& s) { s.autoPlay = false; });
        test::writeAudio(folder_ / "rain.wav", test::noisePlanes(2, 480'000));
    }
    void load() {
        app_.player().load(folder_ / "rain.wav", false);
        settle();
        ASSERT_EQ(loaded(), folder_ / "rain.wav");
    }
    void settle() {
        for (int turn = 0; turn < 4; ++turn) {
            app_.player().loader().drain();
            loop_.advance(0);
        }
    }
};

TEST_F(MediaKeys, DriveThePlayerAndAreToldWhatPlays) {
    EXPECT_EQ(media_.shown, MediaStatus());
    load();
    EXPECT_EQ(media_.shown, (MediaStatus{Playback::paused, "rain.wav", 10, false, 1}));
    media_.wishes.pause();
    settle();
    EXPECT_FALSE(transport_.isPlaying());
    media_.wishes.play();
    settle();
    EXPECT_TRUE(transport_.isPlaying());
    EXPECT_EQ(media_.shown.playback, Playback::playing);
    media_.wishes.play();
    settle();
    EXPECT_TRUE(transport_.isPlaying());
    media_.wishes.seek(4);
    settle();
    EXPECT_NEAR(media_.wishes.position(), 4, 0.01);
    EXPECT_EQ(media_.jumps, 1);
    media_.wishes.playPause();
    EXPECT_EQ(media_.shown.playback, Playback::paused);
    media_.wishes.setLoop(true);
    EXPECT_TRUE(media_.shown.loops);
    for (const auto& [volume, db] : std::initializer_list<std::pair<double, double>>{{0.5, -6.02}, {9, 6}, {0, -60}}) {
        media_.wishes.setVolume(volume);
        EXPECT_NEAR(app_.player().listening().volumeDB(), db, 0.01);
    }
    EXPECT_EQ(media_.shown.volume, 0);
    app_.settings().change([](AppSettings& s) { s.mediaShowsTitle = false; });
    EXPECT_EQ(media_.shown.title, "Brindlehum") << "a lock screen is seen by others";
}

}  // namespace
}  // namespace brindlehum
