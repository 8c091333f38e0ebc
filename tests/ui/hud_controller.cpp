// The audition panel over a real player, on made-up screens.
#include "ui/panel/hud_controller.h"

#include <QToolButton>
#include <nlohmann/json.hpp>

#include "ui/look/theme.h"
#include "ui/look/theme_controller.h"
#include "ui/panel/hud_panel.h"
#include "ui/player/player_view.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

struct HUDControllerTest : test::WindowTest {
    HUDController hud{player, model.settings()};
    HUDPanel& panel = hud.panel();
    const ScreenRect window{50, 40, 700, 300};

    HUDControllerTest() {
        hud.screens = [] { return std::vector<HUDPlacement::Screen>{{{0, 0, 800, 800}, {0, 0, 800, 800}}}; };
    }
};

TEST_F(HUDControllerTest, IsSeenOnlyUnderTheFileManagersWindow) {
    EXPECT_FALSE(panel.isVisible());
    hud.setFileManager(true, std::nullopt);
    EXPECT_FALSE(panel.isVisible()) << "without a window";
    hud.setFileManager(true, window);
    EXPECT_TRUE(panel.isVisible());
    EXPECT_EQ(panel.geometry(), QRect(50, 342, 700, 168));
    hud.setFileManager(false, ScreenRect{0, 0, 640, 400});
    EXPECT_FALSE(panel.isVisible());
    model.handle("expert", {});
    EXPECT_FALSE(panel.isVisible()) << "a change of another setting";
    hud.setFileManager(true, window);
    model.handle("panel", {});
    EXPECT_FALSE(panel.isVisible());
    model.handle("panel", {});
    EXPECT_TRUE(panel.isVisible());
    ASSERT_TRUE(load(file("ambix.wav", 4)));
    EXPECT_EQ(panel.height(), 204) << "a sound field shows a row more";
    ASSERT_TRUE(load(file("two.wav", 2)));
    EXPECT_EQ(panel.height(), 168);
    named<QToolButton>(panel, "Turn the panel off")->click();
    EXPECT_FALSE(panel.isVisible());
    EXPECT_FALSE(model.settings().value().finderPanel);
    EXPECT_TRUE(player.message().text()) << "how it comes back";
}

TEST_F(HUDControllerTest, FitsEverySoundAndTakesNoFocus) {
    hud.setFileManager(true, window);
    for (const int channels : {1, 2, 4, 16}) {
        const bool isSoundfield = channels == 4;
        const std::string name = (isSoundfield ? "ambix " : "sound ") + std::string(90, 'x');
        ASSERT_TRUE(load(file(name + std::to_string(channels) + ".wav", channels)));
        player.notify("A message that is long enough to fill the whole row of a panel that is seven hundred wide.");
        EXPECT_TRUE(settle([&] { return hud.player().waveform().height() >= 28; })) << channels;
        EXPECT_EQ(panel.height(), isSoundfield ? 204 : 168) << channels;
        EXPECT_LE(panel.minimumSizeHint().height(), panel.height()) << channels;
        EXPECT_LE(panel.minimumSizeHint().width(), HUDPlacement::leastWidth) << channels;
    }
    for (const QWidget* part : panel.findChildren<QWidget*>()) {
        EXPECT_EQ(part->focusPolicy(), Qt::NoFocus) << part->metaObject()->className();
    }
}

TEST_F(HUDControllerTest, IsDarkOnALightDesktop) {
    ThemeController theme;
    theme.apply(false);
    hud.setFileManager(true, window);
    ASSERT_TRUE(load(file("two.wav", 2)));
    const QImage picture = panel.grab().toImage();
    EXPECT_LT(picture.pixelColor(4, 4).lightness(), 60);
    const auto* play = named(panel, "Play");
    EXPECT_EQ(Theme::of(*play).window, Theme::darkTheme().window);
    // Of the button alone the symbol is light or dark: the loop's is as light as the text.
    const QImage button = named(panel, "Loop")->grab().toImage();
    int light = 0;
    for (int y = 0; y < button.height(); ++y) {
        for (int x = 0; x < button.width(); ++x) { light += button.pixelColor(x, y).lightness() > 180; }
    }
    EXPECT_GT(light, 10) << "the symbol's pixels";
    theme.apply(true);
}

TEST_F(HUDControllerTest, DrawsNothingWhileItIsHidden) {
    hud.setFileManager(true, window);
    ASSERT_TRUE(load(file("two.wav", 2)));
    hud.setFileManager(false, std::nullopt);
    const int before = hud.player().waveform().pictureCount();
    ASSERT_TRUE(load(file("three.wav", 3)));
    EXPECT_EQ(hud.player().waveform().lanes(), 2) << "what it shows is looked up when it is seen";
    EXPECT_EQ(hud.player().waveform().pictureCount(), before);
    hud.setFileManager(true, window);
    EXPECT_EQ(hud.player().waveform().lanes(), 3);
}

}  // namespace
}  // namespace brindlehum
