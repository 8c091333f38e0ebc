// The height of the player: grows with the lanes, within the window, and keeps what the user added.
#include "ui/window/player_height.h"

#include <QSplitter>
#include <QTest>

#include "ui/player/player_view.h"
#include "ui/window/main_window.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

TEST(PlayerHeight, GrowsWithTheLanesAndKeepsWhatTheUserAdded) {
    struct Case {
        PlayerHeight::Room room;
        int extra;
        int height;
    };
    const std::vector<Case> cases = {
        {{1, false, 560}, 0, 170},   {{4, true, 560}, 0, 204},    {{12, false, 560}, 0, 278},
        {{16, false, 560}, 0, 308},  {{16, false, 960}, 40, 374}, {{16, false, 960}, -60, 274},
        {{1, false, 960}, -60, 170}, {{16, false, 100}, 0, 170},
    };
    for (const auto& [room, extra, height] : cases) {
        EXPECT_EQ(PlayerHeight::withExtra(room, extra), height)
            << room.lanes << " lanes in " << room.available << ", extra " << extra;
    }
}

struct PlayerHeightInWindow : test::WindowTest {};

TEST_F(PlayerHeightInWindow, SixteenLanesHaveNamesInASmallWindowAndTheGripIsRemembered) {
    const auto wide = file("wide.wav", 16);
    const auto mono = file("mono.wav", 1);
    int dragged = 0;
    {
        MainWindow window(model);
        window.resize(900, 600);
        window.show();
        auto& wave = window.playerView().waveform();
        ASSERT_TRUE(load(mono));
        const int low = window.playerView().height();
        ASSERT_TRUE(load(wide));
        ASSERT_TRUE(settle([&] { return wave.height() >= 16 * WaveformPicture::minLabelLane; }));
        QTest::keyClick(named(window, "Height of the player"), Qt::Key_Down);
        dragged = window.playerView().height();
        ASSERT_TRUE(load(mono));
        ASSERT_TRUE(settle([&] { return window.playerView().height() == low; }));
        window.close();
    }
    MainWindow window(model);
    window.show();
    ASSERT_TRUE(load(wide));
    EXPECT_TRUE(settle([&] { return window.playerView().height() == dragged; })) << window.playerView().height();
    QTest::mouseDClick(named(window, "Height of the player"), Qt::LeftButton);
    EXPECT_GT(window.playerView().height(), dragged) << "a double click goes back to the automatic height";
}

}  // namespace
}  // namespace brindlehum
