// The audition surface over a real player: what it shows for which file, and what its controls do.
#include <QLabel>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include "ui/look/elided_label.h"
#include "ui/look/menu_button.h"
#include "ui/look/time_label.h"
#include "ui/look/value_slider.h"
#include "ui/player/player_view.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

using test::FileShape;

struct PlayerViewTest : test::WindowTest {
    PlayerView view{player, WaveformView::Style::window};

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
    QPoint at(double share) { return {int(share * view.waveform().width()), 20}; }
};

TEST_F(PlayerViewTest, ControlsAppearForTheFilesThatTheyServe) {
    struct Case {
        std::string name;
        int channels;
        bool listen;
        bool soundfield;
        QStringList formats;
    };
    const std::vector<Case> cases = {
        {"mono.wav", 1, false, false, {"*Auto (Mono)", "Mono"}},
        {"stereo.wav", 2, true, false, {"*Auto (Stereo)", "Stereo", "2-ch discrete"}},
        {"film.wav", 6, false, false, {"*Auto (5.1)", "5.1", "5.1 Film", "6-ch discrete"}},
        {"field_ambix.wav",
         4,
         false,
         true,
         {"*Auto (AmbiX 1st order)", "Quad", "AmbiX 1st order", "FuMa 1st order", "4-ch discrete"}},
        {"seven.wav", 7, false, false, {"*Auto (7-ch discrete)", "7-ch discrete"}},
    };
    EXPECT_TRUE(view.findChild<QLabel*>()) << "the empty surface";
    for (const QString name : {"Source format", "Listen", "Yaw", "Drag as", "Drag handle", "Waveform"}) {
        EXPECT_FALSE(shows(name)) << name.toStdString() << " without a file";
    }
    EXPECT_FALSE(named(view, "Play")->isEnabled());
    for (const auto& item : cases) {
        SCOPED_TRACE(item.name);
        ASSERT_TRUE(load(file(item.name, item.channels)));
        EXPECT_TRUE(shows("Source format"));
        EXPECT_TRUE(shows("Output profile"));
        EXPECT_TRUE(shows("Drag handle"));
        EXPECT_FALSE(shows("Drag as")) << "one form only";
        EXPECT_EQ(shows("Listen"), item.listen);
        EXPECT_EQ(shows("Yaw"), item.soundfield);
        EXPECT_EQ(entries("Source format"), item.formats);
    }
}

TEST_F(PlayerViewTest, AnOverrideChangesWhatIsOffered) {
    ASSERT_TRUE(load(file("four.wav", 4)));
    choose("Source format", 3);  // after Auto, the separator and Quad
    EXPECT_EQ(player.source(), SourceFormat::ambisonic(1, AmbiNorm::sn3d));
    EXPECT_TRUE(shows("Pitch"));
    EXPECT_EQ(named(view, "Source format")->accessibleName(), "Source format: AmbiX 1st order");
    choose("Source format", 0);
    EXPECT_FALSE(player.formatOverride());
}

TEST_F(PlayerViewTest, ListenModesByTheirNames) {
    ASSERT_TRUE(load(file("two.wav", 2)));
    EXPECT_EQ(entries("Listen"), (QStringList{"*Stereo", "Mono sum", "Left only", "Right only", "M/S decode"}));
    choose("Listen", 4);
    EXPECT_EQ(player.listen(), ListenMode::midSide);
    choose("Source format", 3);
    EXPECT_FALSE(shows("Listen")) << "two discrete channels are no stereo source";
}

TEST_F(PlayerViewTest, TheProfileMenuSelects) {
    EXPECT_EQ(entries("Output profile"), (QStringList{"*Room 9.1.6", "Nearfield", "Headphones"}));
    choose("Output profile", 2);
    EXPECT_EQ(model.settings().activeProfile().name, "Headphones");
    EXPECT_EQ(named(view, "Output profile")->accessibleName(), "Output profile: Headphones");
}

TEST_F(PlayerViewTest, TogglesGoThroughModelAndStore) {
    auto* autoPlay = named<QToolButton>(view, "Auto-play");
    autoPlay->click();
    EXPECT_TRUE(model.settings().value().autoPlay);
    model.settings().change([](AppSettings& s) { s.autoPlay = false; });
    EXPECT_FALSE(autoPlay->isChecked());
    named<QToolButton>(view, "Loop")->click();
    EXPECT_TRUE(player.loop());
    player.setLoop(false);
    EXPECT_FALSE(named<QToolButton>(view, "Loop")->isChecked());
}

TEST_F(PlayerViewTest, LevelFollowsTheHandleAndComesBackOnADoubleClick) {
    auto* level = named<ValueSlider>(view, "Audition level");
    EXPECT_EQ(level->minimum() * -1.0, level->maximum() / 6.0 * 40);
    QTest::keyClick(level, Qt::Key_Left);
    EXPECT_NEAR(player.volumeDB(), -0.5, 1e-9);
    EXPECT_EQ(level->toolTip(), "Audition level -0.5 dB");
    QTest::keyClick(level, Qt::Key_Home);
    EXPECT_NEAR(player.volumeDB(), -40, 1e-9);
    QTest::mouseDClick(level, Qt::LeftButton);
    EXPECT_NEAR(player.volumeDB(), 0, 1e-9);
    player.setVolumeDB(6);
    EXPECT_EQ(level->value(), level->maximum());
}

TEST_F(PlayerViewTest, SoundfieldTurnsAndResets) {
    ASSERT_TRUE(load(file("foa_ambix.wav", 4)));
    auto* yaw = named<ValueSlider>(view, "Yaw");
    QTest::keyClick(yaw, Qt::Key_End);
    QTest::keyClick(named(view, "Pitch"), Qt::Key_Home);
    EXPECT_EQ(player.rotation(), (Rotation{180, -90, 0}));
    EXPECT_EQ(yaw->parentWidget()->toolTip(),
              "Soundfield yaw 180°, pitch -90°, roll 0°: double-click Reset to zero all three");
    QTest::mouseClick(named(view, "Reset the soundfield"), Qt::LeftButton);
    EXPECT_EQ(player.rotation(), Rotation{});
    QTest::keyClick(yaw, Qt::Key_Home);
    for (auto* label : yaw->parentWidget()->findChildren<QLabel*>()) {
        if (label->text() == "Soundfield") { QTest::mouseDClick(label, Qt::LeftButton); }
    }
    EXPECT_EQ(player.rotation(), Rotation{});
    EXPECT_EQ(yaw->value(), 0);
}

TEST_F(PlayerViewTest, TheHeaderTellsTheFileAndTheDevice) {
    const std::string longName(90, 'x');
    ASSERT_TRUE(load(file(longName + "_end.wav", 2)));
    const auto labels = view.findChildren<ElidedLabel*>();
    QStringList texts;
    for (const auto* label : labels) { texts << label->fullText(); }
    EXPECT_TRUE(texts.contains(QString::fromStdString(longName + "_end.wav")));
    EXPECT_TRUE(texts.contains(QString::fromStdString(player.info()->summary())));
    EXPECT_TRUE(texts.contains("on Manual")) << texts.join(" | ").toStdString();
    model.settings().change([](AppSettings& s) { s.profiles[0].deviceUID = "gone"; });
    EXPECT_TRUE(named(view, "on Manual, for the profile's device is unavailable"));
    view.resize(400, 400);
    EXPECT_TRUE(labels[0]->text().contains("…")) << labels[0]->text().toStdString();
    EXPECT_TRUE(labels[0]->text().endsWith("nd.wav"));
}

TEST_F(PlayerViewTest, ADeadFileLeavesItsMessage) {
    player.load(folder / "missing.wav", false);
    ASSERT_TRUE(loop.runUntil([&] { return player.message().has_value(); }));
    EXPECT_TRUE(named(view, "Can't read missing.wav")->isVisible());
    ASSERT_TRUE(load(file("good.wav", 2)));
    EXPECT_FALSE(shows("Can't read missing.wav"));
}

TEST_F(PlayerViewTest, TheMouseSelectsAndSeeks) {
    ASSERT_TRUE(load(file("take.wav", 2)));
    WaveformView& wave = view.waveform();
    QTest::mousePress(&wave, Qt::LeftButton, {}, at(0.25));
    QTest::mouseMove(&wave, at(0.5));
    EXPECT_TRUE(wave.selection());
    EXPECT_FALSE(player.selection()) << "not before it is let go";
    QTest::mouseRelease(&wave, Qt::LeftButton, {}, at(0.75));
    ASSERT_TRUE(player.selection());
    EXPECT_NEAR(double(player.selection()->lower), 12000, 60);
    EXPECT_NEAR(double(player.selection()->upper), 36000, 60);
    ASSERT_TRUE(loop.runUntil([&] { return player.isPlaying(); }));
    EXPECT_TRUE(shows("Clear selection"));
    QTest::mouseClick(&wave, Qt::LeftButton, {}, at(0.5));
    EXPECT_TRUE(player.selection()) << "a click inside keeps it";
    EXPECT_NEAR(double(player.cueFrame()), 24000, 60);
    named<QToolButton>(view, "Clear selection")->click();
    EXPECT_FALSE(player.selection());
    EXPECT_FALSE(wave.selection());
}

TEST_F(PlayerViewTest, ASelectionThatTheModelRefusesIsNotShown) {
    const auto path = folder / "long.wav";
    test::writeAudio(path, test::noisePlanes(1, 4800), {});
    ASSERT_TRUE(load(path));
    WaveformView& wave = view.waveform();
    // Some 6 pixels of 0.1 s on a thousand: far below 10 ms.
    QTest::mousePress(&wave, Qt::LeftButton, {}, {100, 20});
    QTest::mouseMove(&wave, {106, 20});
    EXPECT_TRUE(wave.selection());
    QTest::mouseRelease(&wave, Qt::LeftButton, {}, {106, 20});
    EXPECT_FALSE(player.selection());
    EXPECT_FALSE(wave.selection());
}

TEST_F(PlayerViewTest, ControlDragTakesTheWholeFile) {
    ASSERT_TRUE(load(file("out.wav", 2)));
    std::vector<bool> asked;
    view.waveform().exportForDrag = [&](bool selectionOnly) -> std::optional<std::filesystem::path> {
        asked.push_back(selectionOnly);
        return std::nullopt;
    };
    QTest::mousePress(&view.waveform(), Qt::LeftButton, Qt::ControlModifier, at(0.5));
    QTest::mouseMove(&view.waveform(), at(0.6));
    EXPECT_EQ(asked, std::vector<bool>{false});
    EXPECT_TRUE(std::holds_alternative<WaveformGesture::Idle>(view.waveform().gesture())) << "nothing to hand over";
    QTest::mouseRelease(&view.waveform(), Qt::LeftButton, {}, at(0.6));
    EXPECT_FALSE(player.isPlaying());
}

TEST_F(PlayerViewTest, TheKeyboardMovesThePlayhead) {
    ASSERT_TRUE(load(file("keys.wav", 2)));
    WaveformView& wave = view.waveform();
    QTest::keyClick(&wave, Qt::Key_Right);
    EXPECT_EQ(player.cueFrame(), 480);
    QTest::keyClick(&wave, Qt::Key_End);
    EXPECT_EQ(player.cueFrame(), 47999);
    QTest::keyClick(&wave, Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(player.cueFrame(), 47999);
    QTest::keyClick(&wave, Qt::Key_Home);
    EXPECT_EQ(player.cueFrame(), 0);
    ASSERT_TRUE(loop.runUntil([&] { return player.isPlaying(); }));
    QTest::keyClick(&wave, Qt::Key_Space);
    EXPECT_FALSE(player.isPlaying());
    player.select(FrameRange{1000, 20000});
    QTest::keyClick(&wave, Qt::Key_Escape);
    EXPECT_FALSE(player.selection());
}

TEST_F(PlayerViewTest, AMovingPlayheadRepaintsAStripAndNoLanes) {
    ASSERT_TRUE(load(file("move.wav", 2)));
    WaveformView& wave = view.waveform();
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
    player.playhead().setFrame(30000);
    QCoreApplication::processEvents();
    ASSERT_FALSE(watch.painted.isEmpty());
    int area = 0;
    for (const QRect& part : watch.painted) { area += part.width() * part.height(); }
    EXPECT_LE(area, 6 * wave.height());
    player.select(FrameRange{1000, 20000});
    QCoreApplication::processEvents();
    EXPECT_EQ(wave.pictureCount(), pictures);
    wave.resize(wave.width() + 10, wave.height());
    QCoreApplication::processEvents();
    EXPECT_EQ(wave.pictureCount(), pictures + 1);
}

}  // namespace
}  // namespace brindlehum
