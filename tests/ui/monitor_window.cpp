// The monitor's window: what its controls set, and what they show.
#include "ui/monitor/monitor_window.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>
#include <stdexcept>

#include "support/platform/manual_audio.h"
#include "support/platform/manual_main_loop.h"
#include "ui/look/number_field.h"
#include "ui/look/value_slider.h"
#include "ui/monitor/reference_button.h"
#include "ui/monitor/speaker_map.h"
#include "ui/player/upmix_sliders.h"

namespace brindlehum {
namespace {

TEST(PlanPlace, LeftIsLeftAndHeightsAreInside) {
    const SpeakerList& room = speakers(LayoutID::l916);
    for (const SpeakerID speaker : room) {
        const QPointF at = planPlace(speaker, room);
        const std::string name(rawValue(speaker));
        EXPECT_EQ(at.x() < -0.01, name[0] == 'L' && name != "LFE") << name;
        EXPECT_EQ(at.x() > 0.01, name[0] == 'R') << name;
        const bool isHeight = name.size() == 3 && name[1] == 't';
        EXPECT_NEAR(std::hypot(at.x(), at.y()), name == "LFE" ? 0.3 : isHeight ? 0.55 : 1, 1e-9) << name;
    }
    EXPECT_LT(planPlace(SpeakerID::C, room).y(), 0) << "the front is at the top";
    EXPECT_GT(planPlace(SpeakerID::Lrs, room).y(), 0);
}

class MonitorWindowTest : public testing::Test {
protected:
    static std::shared_ptr<BinauralStage> noStage(double) { throw std::runtime_error("no set"); }

    MonitorWindowTest() {
        audio_.setInputs({{7, "bus", "Bus of the desk", 16}});
        settings_.change([](AppSettings& s) { s.profiles[0].layout = LayoutID::l916; });
        window_.show();
        window_.activateWindow();  // its shortcuts count, too
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    }
    SpeakerTile* tile(const QString& name) { return window_.findChild<SpeakerTile*>(name); }
    NumberField* findNumber(const QString& name) {
        for (auto* each : window_.findChildren<NumberField*>()) {
            if (each->accessibleName() == name) { return each; }
        }
        return nullptr;
    }
    template <class Button>
    Button* button(const QString& text) {
        for (auto* each : window_.findChildren<Button*>()) {
            if (each->text() == text) { return each; }
        }
        return nullptr;
    }

    ManualMainLoop loop_;
    ManualAudioSystem audio_{loop_};
    MemoryDefaults defaults_;
    SettingsStore settings_{defaults_};
    MonitorEngine monitor_{audio_, settings_, loop_, noStage};
    MonitorWindow window_{monitor_, settings_, loop_};
};

TEST_F(MonitorWindowTest, TilesSoloAndMute) {
    using enum SpeakerID;
    QTest::mouseClick(tile("Ls"), Qt::LeftButton);
    EXPECT_EQ(monitor_.state().solo, std::set{Ls});
    QTest::mouseClick(tile("Ls"), Qt::RightButton);
    QTest::mouseClick(tile("C"), Qt::LeftButton, Qt::AltModifier);
    QTest::keyClick(tile("R"), Qt::Key_M);
    EXPECT_EQ(monitor_.state().muted, std::set({Ls, C, R}));
    EXPECT_FALSE(monitor_.state().mute) << "the key is the speaker's, not the window's";
    EXPECT_EQ(tile("Ls")->accessibleName(), "Lss, solo, muted");
    QTest::mouseClick(button<QPushButton>("Clear solos and mutes"), Qt::LeftButton);
    EXPECT_TRUE(monitor_.state().solo.empty() && monitor_.state().muted.empty());
    EXPECT_FALSE(button<QPushButton>("Clear solos and mutes")->isVisible());
}

TEST_F(MonitorWindowTest, ControlsFollowTheStateAndTheProfile) {
    QTest::mouseClick(button<QToolButton>("5.1"), Qt::LeftButton);
    EXPECT_EQ(monitor_.state().mode, MonitorMode::l51);
    QTest::mouseClick(button<QToolButton>("Dim"), Qt::LeftButton);
    EXPECT_TRUE(monitor_.state().dim);
    QTest::mousePress(button<QToolButton>("L − R"), Qt::LeftButton);
    EXPECT_EQ(monitor_.state().check, MonitorCheck::side);
    EXPECT_NE(button<QLabel>("Hearing L − R"), nullptr);
    QTest::mouseRelease(button<QToolButton>("L − R"), Qt::LeftButton);
    EXPECT_EQ(monitor_.state().check, MonitorCheck::none);
    EXPECT_FALSE(button<QToolButton>("L − R")->isChecked());
    MonitorState state;
    state.volumeDB = -12.5;
    state.source = MonitorSource::l51;
    monitor_.setState(state);
    EXPECT_TRUE(button<QToolButton>("Full")->isChecked());
    EXPECT_FALSE(button<QToolButton>("5.1")->isChecked());
    EXPECT_TRUE(button<QToolButton>("Upmix")->isEnabled());
    auto* volume = findNumber("Monitor volume in dB");
    EXPECT_EQ(volume->text(), "-12.5 dB");
    volume->selectAll();
    QTest::keyClicks(volume, "-7,3");
    QTest::keyClick(volume, Qt::Key_Return);
    EXPECT_EQ(monitor_.state().volumeDB, -7.3);
    findNumber("Dim by")->setValue(-10);
    EXPECT_EQ(monitor_.state().dimDB, -10);
    auto* reference = window_.findChild<ReferenceButton*>();
    reference->askSPL = [](double, double) { return 83.0; };
    QTest::mouseClick(reference, Qt::LeftButton, {}, {5, 5});
    findNumber("Monitor volume in dB")->setValue(-20);
    EXPECT_NE(button<QLabel>("70.3 dB SPL"), nullptr);
    QTest::mouseClick(reference, Qt::LeftButton, {}, {5, 5});
    EXPECT_EQ(monitor_.state().volumeDB, -7.3);
    findNumber("Delay of C")->setValue(2.5);
    EXPECT_EQ(monitor_.state().alignment, (std::map<SpeakerID, SpeakerAlignment>{{SpeakerID::C, {2.5, false}}}));

    EXPECT_FALSE(window_.findChild<QSpinBox*>()->isVisible());
    settings_.change([](AppSettings& s) { s.expertMode = true; });
    EXPECT_TRUE(window_.findChild<QSpinBox*>()->isVisible());
    EXPECT_EQ(window_.findChild<QSpinBox*>()->value(), 1) << "inputs count from 1";
    auto* sliders = window_.findChild<UpmixSliders*>();
    EXPECT_FALSE(sliders->isVisible());
    QTest::mouseClick(button<QToolButton>("Upmix"), Qt::LeftButton);
    EXPECT_TRUE(sliders->isVisible());
    for (auto* each : sliders->findChildren<ValueSlider*>()) {
        if (each->accessibleName() == "Heights") { each->setValue(each->maximum()); }
    }
    EXPECT_EQ(monitor_.state().upmix.params.heightDB, 6);

    EXPECT_FALSE(button<QToolButton>("Folded to L and R")->isVisible());
    settings_.change([](AppSettings& s) { s.profiles[0].kind = OutputProfile::Kind::headphones; });
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window_.findChildren<SpeakerTile*>().size(), 2);
    EXPECT_FALSE(button<QToolButton>("Upmix")->isEnabled());
    EXPECT_TRUE(button<QToolButton>("Folded to L and R")->isVisible());
}

TEST_F(MonitorWindowTest, StartsAndStopsAndSaysWhyNot) {
    QTest::mouseClick(button<QPushButton>("Start"), Qt::LeftButton);
    EXPECT_NE(button<QLabel>("Choose the source (where your DAW's bus arrives)"), nullptr);
    monitor_.setSourceUID("bus");
    QTest::mouseClick(button<QPushButton>("Start"), Qt::LeftButton);
    EXPECT_TRUE(monitor_.running());
    audio_.setInputs({});
    loop_.drain();
    EXPECT_NE(button<QPushButton>("Stop"), nullptr) << "it waits until it is stopped";
    QTest::mouseClick(button<QPushButton>("Stop"), Qt::LeftButton);
    EXPECT_FALSE(monitor_.waiting());
    EXPECT_NE(button<QPushButton>("Start"), nullptr);
}

}  // namespace
}  // namespace brindlehum
