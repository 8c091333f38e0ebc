// The audition surface over a real player: what it shows for which file, and what its controls do.
#include <QLabel>
#include <QMenu>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

#include "ui/look/menu_button.h"
#include "ui/look/value_slider.h"
#include "ui/player/meter_view.h"
#include "ui/player/player_view.h"
#include "ui/player/upmix_panel.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

using test::FileShape;

struct PlayerViewTest : test::WindowTest {
    PlayerView view{player, model.settings(), WaveformView::Style::window};
    WaveformView& wave = view.waveform();

    PlayerViewTest() {
        view.resize(1000, 400);
        view.show();
    }
    bool shows(const QString& name) {
        const auto* widget = named(view, name);
        return widget && widget->isVisible();
    }
    QStringList entries(const QString& name) {
        auto* button = named<MenuButton>(view, name);
        if (!button) { return {}; }
        Q_EMIT button->menu()->aboutToShow();
        QStringList texts;
        for (const auto* action : button->menu()->actions()) {
            if (!action->isSeparator()) { texts << (action->isChecked() ? "*" : "") + action->text(); }
        }
        return texts;
    }
    void choose(const QString& name, int entry) {
        auto* menu = named<MenuButton>(view, name)->menu();
        Q_EMIT menu->aboutToShow();
        menu->actions().at(entry)->trigger();
    }
    // At a share of the waveform's width.
    QPoint at(double share) { return {int(share * wave.width()), 20}; }
};

TEST_F(PlayerViewTest, ControlsAppearForTheFilesThatTheyServe) {
    EXPECT_FALSE(named(view, "Play")->isEnabled());
    struct Case {
        std::string name;
        int channels;
        bool listen, soundfield;
        QStringList formats;
    };
    const std::vector<Case> cases = {
        {"mono.wav", 1, false, false, {"*Auto (Mono)", "Mono"}},
        {"stereo.wav", 2, true, false, {"*Auto (Stereo)", "Stereo", "2-ch discrete"}},
        {"ambix.wav",
         4,
         false,
         true,
         {"*Auto (AmbiX 1st order)", "Quad", "AmbiX 1st order", "FuMa 1st order", "4-ch discrete"}},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.name);
        ASSERT_TRUE(load(file(item.name, item.channels)));
        EXPECT_EQ(shows("Listen"), item.listen);
        EXPECT_EQ(shows("Reset the soundfield"), item.soundfield);
        EXPECT_EQ(entries("Source format"), item.formats);
    }
}

TEST_F(PlayerViewTest, MenusChooseAndShowTheChoice) {
    ASSERT_TRUE(load(file("two.wav", 2)));
    EXPECT_EQ(entries("Listen"), (QStringList{"*Stereo", "Mono sum", "Left only", "Right only", "M/S decode"}));
    choose("Listen", 4);
    EXPECT_EQ(player.listening().listen(), ListenMode::midSide);
    choose("Source format", 3);  // after Auto, the separator and Stereo
    EXPECT_EQ(player.sound().source(), SourceFormat::discrete(2));
    EXPECT_FALSE(shows("Listen")) << "two discrete channels are no stereo source";
    choose("Source format", 0);
    EXPECT_FALSE(player.sound().formatOverride());
    EXPECT_EQ(entries("Upmix"), (QStringList{"*Off", "Music", "Film", "Game", "Hall", "Speech", "Broadcast",
                                             "Compare with the Fold-Down", "Adjust…"}));
    choose("Upmix", 3);  // after Off, the separator and Music
    loop.advance(0);
    EXPECT_EQ(player.listening().upmix(), (UpmixSettings{true, UpmixPreset::film, params(UpmixPreset::film)}));
    EXPECT_TRUE(shows("Upmix: Film"));
    EXPECT_FALSE(named(view, "Listen: M/S decode")->isEnabled()) << "an upmix doesn't hear it";
    EXPECT_EQ(entries("Output profile"), (QStringList{"*Room 9.1.6", "Nearfield", "Headphones"}));
    choose("Output profile", 2);
    EXPECT_EQ(model.settings().activeProfile().name, "Headphones");
    EXPECT_TRUE(shows("Upmix: Film")) << "headphones are a virtual room";
    choose("Output profile", 1);
    EXPECT_FALSE(shows("Upmix: Film")) << "two speakers have nothing to fill";
    EXPECT_TRUE(named(view, "Listen: M/S decode")->isEnabled());
}

TEST_F(PlayerViewTest, TheUpmixPanelShapesTheUpmixAndKeepsIt) {
    ASSERT_TRUE(load(file("two.wav", 2)));
    player.upmix().choose("film");
    loop.advance(0);
    view.showUpmixPanel();
    auto* panel = view.findChild<UpmixPanel*>();
    ASSERT_TRUE(panel);
    const auto now = [&] { return player.upmix().now().params; };
    auto* ambience = named<ValueSlider>(*panel, "Ambience");
    QTest::keyClick(ambience, Qt::Key_Right);
    QTest::keyClick(ambience, Qt::Key_Right);
    EXPECT_DOUBLE_EQ(now().ambienceDB, 3);
    loop.advance(0);
    EXPECT_TRUE(shows("Upmix: Film (changed)"));
    for (const bool mouse : {true, false}) {
        player.upmix().edit({.stage = 45});
        loop.advance(0);
        auto* stage = named<ValueSlider>(*panel, "Front stage");
        mouse ? QTest::mouseDClick(stage, Qt::LeftButton) : QTest::keyClick(stage, Qt::Key_Delete);
        EXPECT_EQ(now().stage, 30) << "the preset's value";
        QTest::mouseRelease(stage, Qt::LeftButton);
    }
    // A preset's value that the slider can't show comes back all the same.
    player.upmix().choose("speech");
    loop.advance(0);
    auto* heights = named<ValueSlider>(*panel, "Heights");
    QTest::keyClick(heights, Qt::Key_End);
    EXPECT_EQ(now().heightDB, 6);
    QTest::keyClick(heights, Qt::Key_Delete);
    EXPECT_EQ(now().heightDB, -80);
    EXPECT_TRUE(named(*panel, "Surround delay")->isEnabled());
    player.upmix().choose("broadcast");
    loop.advance(0);
    EXPECT_FALSE(named<ValueSlider>(*panel, "Surround delay")->isEnabled()) << "an exact fold-down has no delays";

    const QString name = "A very long name of a preset & of the bed that it was made for, with everything in it";
    const auto keep = [&](int entry) {
        auto* menu = named<MenuButton>(*panel, "Keep")->menu();
        Q_EMIT menu->aboutToShow();
        menu->actions().at(entry)->trigger();
        loop.advance(0);
    };
    panel->askName = [&](auto&, auto&) { return std::optional<QString>("Film"); };
    keep(1);
    EXPECT_TRUE(named<QLabel>(*panel, "Note")->text().contains("built-in"));
    EXPECT_TRUE(player.upmix().own().empty());
    const int narrow = named<MenuButton>(view, "Upmix")->sizeHint().width();
    panel->askName = [&](auto&, auto&) { return std::optional(name); };
    keep(1);
    EXPECT_EQ(player.upmix().now().own, name.toStdString());
    EXPECT_LT(named<MenuButton>(view, "Upmix")->sizeHint().width(), narrow + 200) << "a long name is cut";
    EXPECT_TRUE(entries("Upmix").filter("*A very long").size() == 1);
    panel->confirm = [](auto&, auto&) { return false; };
    keep(3);
    EXPECT_EQ(player.upmix().own().size(), 1U);
    panel->confirm = [](auto&, auto&) { return true; };
    keep(3);
    EXPECT_TRUE(player.upmix().own().empty());
    panel->close();
}

TEST_F(PlayerViewTest, AnOverrideIsShownWithAWayBack) {
    ASSERT_TRUE(load(file("eight.wav", 8)));
    EXPECT_EQ(entries("Source format"),
              (QStringList{"*Auto (7.1)", "7.1", "7.1 Film", "8-ch discrete", "7.1 (WAVE order)"}));
    EXPECT_FALSE(shows("Back to Auto (7.1)"));
    choose("Source format", 3);
    EXPECT_TRUE(shows("Source format: 7.1 Film (set)"));
    EXPECT_TRUE(shows("Back to Auto (7.1)"));
    EXPECT_EQ(entries("Source format").last(),
              "For All 8-Channel Files in “" + QString::fromStdString(folder.path().filename().string()) + "”");
    choose("Source format", 7);
    EXPECT_TRUE(shows("Source format: 7.1 Film (folder)"));
    EXPECT_TRUE(entries("Source format").last().startsWith('*'));
    named<QToolButton>(view, "Back to Auto (7.1)")->click();
    EXPECT_FALSE(player.sound().formatOverride());
    EXPECT_TRUE(shows("Source format: Auto (7.1)"));
}

TEST_F(PlayerViewTest, TheMeterMarksOverRangeUntilAClick) {
    ASSERT_TRUE(load(file("loud.wav", 2)));
    auto* meter = named<MeterView>(view, "Output meter");
    player.listening().setVolumeDB(40);
    player.play(0);
    ASSERT_TRUE(loop.runUntil([&] { return player.isPlaying(); }));
    for (int i = 0; i < 4; ++i) { audio.pump(512); }
    loop.advance(1.0 / 30);
    EXPECT_TRUE(meter->textAt(5).endsWith("over (click to clear)")) << meter->textAt(5).toStdString();
    QTest::mouseClick(meter, Qt::LeftButton);
    EXPECT_FALSE(meter->textAt(5).contains("over"));
}

TEST_F(PlayerViewTest, TogglesAndLevelFollowTheModelAndChangeIt) {
    auto* autoPlay = named<QToolButton>(view, "Auto-play");
    autoPlay->click();
    EXPECT_TRUE(model.settings().value().autoPlay);
    model.settings().change([](AppSettings& s) { s.autoPlay = false; });
    EXPECT_FALSE(autoPlay->isChecked());
    auto* loopToggle = named<QToolButton>(view, "Loop");
    loopToggle->click();
    EXPECT_TRUE(player.transport().loop());
    player.transport().setLoop(false);
    EXPECT_FALSE(loopToggle->isChecked());
    auto* level = named<ValueSlider>(view, "Audition level");
    QTest::keyClick(level, Qt::Key_Left);
    EXPECT_NEAR(player.listening().volumeDB(), -0.5, 1e-9);
    QTest::mouseDClick(level, Qt::LeftButton);
    EXPECT_NEAR(player.listening().volumeDB(), 0, 1e-9);
    player.listening().setVolumeDB(6);
    EXPECT_EQ(level->value(), level->maximum());
}

TEST_F(PlayerViewTest, TheSoundfieldTurnsAndResets) {
    ASSERT_TRUE(load(file("foa_ambix.wav", 4)));
    auto* yaw = named<ValueSlider>(view, "Yaw");
    QTest::keyClick(yaw, Qt::Key_End);
    QTest::keyClick(named<ValueSlider>(view, "Pitch"), Qt::Key_Home);
    EXPECT_EQ(player.listening().rotation(), (Rotation{180, -90, 0}));
    QTest::mouseClick(named(view, "Reset the soundfield"), Qt::LeftButton);
    EXPECT_EQ(player.listening().rotation(), Rotation{});
    EXPECT_EQ(yaw->value(), 0);
}

TEST_F(PlayerViewTest, HeaderNamesFileDeviceAndFault) {
    ASSERT_TRUE(load(file("take.wav", 2)));
    EXPECT_TRUE(shows(QString::fromStdString(player.sound().info()->summary())));
    EXPECT_TRUE(shows("take.wav"));
    model.settings().change([](AppSettings& s) { s.profiles[0].deviceUID = "gone"; });
    EXPECT_TRUE(shows("on Manual, for the profile's device is unavailable"));
    player.load(folder / "missing.wav", false);
    ASSERT_TRUE(loop.runUntil([&] { return player.message().text().has_value(); }));
    EXPECT_TRUE(shows("Can't read missing.wav"));
}

TEST_F(PlayerViewTest, TheMouseSelectsAndSeeks) {
    ASSERT_TRUE(load(file("take.wav", 2)));
    QTest::mousePress(&wave, Qt::LeftButton, {}, at(0.25));
    QTest::mouseMove(&wave, at(0.5));
    EXPECT_TRUE(wave.selection());
    EXPECT_FALSE(player.transport().selection()) << "not before it is let go";
    QTest::mouseRelease(&wave, Qt::LeftButton, {}, at(0.75));
    ASSERT_TRUE(player.transport().selection());
    EXPECT_NEAR(double(player.transport().selection()->lower), 12000, 60);
    EXPECT_NEAR(double(player.transport().selection()->upper), 36000, 60);
    ASSERT_TRUE(loop.runUntil([&] { return player.isPlaying(); }));
    QTest::mouseClick(&wave, Qt::LeftButton, {}, at(0.5));
    EXPECT_TRUE(player.transport().selection()) << "a click inside keeps it";
    EXPECT_NEAR(double(player.transport().cueFrame()), 24000, 60);
    named<QToolButton>(view, "Clear selection")->click();
    EXPECT_FALSE(player.transport().selection());
    EXPECT_FALSE(wave.selection());
    // Six pixels of a tenth of a second are far below the shortest selection, 10 ms.
    test::writeAudio(folder / "short.wav", test::noisePlanes(1, 4800), {});
    ASSERT_TRUE(load(folder / "short.wav"));
    QTest::mousePress(&wave, Qt::LeftButton, {}, {100, 20});
    QTest::mouseMove(&wave, {106, 20});
    EXPECT_TRUE(wave.selection());
    QTest::mouseRelease(&wave, Qt::LeftButton, {}, {106, 20});
    EXPECT_FALSE(player.transport().selection());
    EXPECT_FALSE(wave.selection()) << "what the model refused isn't shown";
}

TEST_F(PlayerViewTest, TheKeyboardMovesThePlayhead) {
    ASSERT_TRUE(load(file("keys.wav", 2)));
    const std::vector<std::tuple<Qt::Key, Qt::KeyboardModifier, int64_t>> keys = {
        {Qt::Key_Right, Qt::NoModifier, 480},
        {Qt::Key_End, Qt::NoModifier, 47999},
        {Qt::Key_Right, Qt::ShiftModifier, 47999},
        {Qt::Key_Home, Qt::NoModifier, 0}};
    for (const auto& [key, modifier, frame] : keys) {
        QTest::keyClick(&wave, key, modifier);
        EXPECT_EQ(player.transport().cueFrame(), frame);
    }
    ASSERT_TRUE(loop.runUntil([&] { return player.isPlaying(); }));
    QTest::keyClick(&wave, Qt::Key_Space);
    EXPECT_FALSE(player.isPlaying());
    player.transport().select(FrameRange{1000, 20000});
    QTest::keyClick(&wave, Qt::Key_Escape);
    EXPECT_FALSE(player.transport().selection());
}

TEST_F(PlayerViewTest, ZoomedInAClickHitsTheFrameUnderIt) {
    ASSERT_TRUE(load(file("zoom.wav", 2)));
    auto* bar = named<QScrollBar>(view, "Part of the sound in view");
    EXPECT_FALSE(bar->isVisible());
    const auto turn = [&](int notches, Qt::KeyboardModifier key) {
        const QPointF at(wave.width() / 4.0, 20);
        QWheelEvent wheel(at, wave.mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton, key, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(&wave, &wheel);
    };
    turn(200, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(wave.visibleRange().length, VisibleRange::minLength);
    EXPECT_NEAR(wave.visibleRange().frameAt(0.25), 12000, 1) << "the frame under the pointer stays";
    EXPECT_TRUE(bar->isVisible());
    ASSERT_TRUE(loop.runUntil([&] { return player.sound().detail().data() != nullptr; }));
    EXPECT_EQ(player.sound().detail().data()->bucketFrames, 1);
    const int64_t frame = wave.frameAt(wave.width() / 2);
    QTest::mouseClick(&wave, Qt::LeftButton, {}, {wave.width() / 2, 20});
    EXPECT_EQ(player.transport().cueFrame(), frame);
    turn(-10, Qt::NoModifier);
    EXPECT_NEAR(wave.visibleRange().frameAt(0.25), 12000 + VisibleRange::minLength, 1) << "ten notches are a page";
    QTest::keyClick(&wave, Qt::Key_0);
    EXPECT_TRUE(wave.visibleRange().isAll());
    QTest::keyClick(&wave, Qt::Key_Plus);
    EXPECT_EQ(wave.visibleRange().length, 24000);
    bar->setValue(bar->maximum());
    EXPECT_NEAR(wave.visibleRange().end(), 48000, 1);
    ASSERT_TRUE(load(file("next.wav", 2)));
    EXPECT_TRUE(wave.visibleRange().isAll()) << "the next sound is shown whole";
}

TEST_F(PlayerViewTest, TheBracketsSelectAtThePlayheadAndZShowsTheSelection) {
    ASSERT_TRUE(load(file("brackets.wav", 2)));
    player.transport().seek(12000);
    QTest::keyClick(&wave, Qt::Key_BracketLeft);
    EXPECT_EQ(player.transport().selection(), (FrameRange{12000, 48000}));
    player.transport().seek(24000);
    QTest::keyClick(&wave, Qt::Key_BracketRight);
    EXPECT_EQ(player.transport().selection(), (FrameRange{12000, 24000}));
    QTest::keyClick(&wave, Qt::Key_Z);
    EXPECT_NEAR(wave.visibleRange().first, 11400, 1);
    EXPECT_NEAR(wave.visibleRange().length, 13200, 1);
}

TEST_F(PlayerViewTest, AMovingPlayheadRepaintsAStripOnly) {
    ASSERT_TRUE(load(file("move.wav", 2)));
    ASSERT_TRUE(settle([&] { return wave.pictureCount() > 0; }));
    QCoreApplication::processEvents();
    const int pictures = wave.pictureCount();
    struct Watch : QObject {
        QRegion painted;
        bool eventFilter(QObject* /*watched*/, QEvent* event) override {
            if (event->type() == QEvent::Paint) { painted += static_cast<QPaintEvent*>(event)->region(); }
            return false;
        }
    } watch;
    wave.installEventFilter(&watch);
    player.transport().playhead().setFrame(30000);
    QCoreApplication::processEvents();
    ASSERT_FALSE(watch.painted.isEmpty());
    int area = 0;
    for (const QRect& part : watch.painted) { area += part.width() * part.height(); }
    // Two strips, each of the playhead and its halo of a pixel on either side.
    EXPECT_LE(area, 2 * 4 * wave.height());
    EXPECT_EQ(wave.pictureCount(), pictures) << "the lanes stay";
}

}  // namespace
}  // namespace brindlehum
