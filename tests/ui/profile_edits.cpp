// The rules of the profile editor, and that the form obeys them through the store.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include "ui/settings/outputs_settings.h"
#include "ui/settings/profile_edits.h"
#include "ui/settings/trim_stepper.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

using namespace ProfileEdits;

TEST(ProfileEdits, ShortListsReadSequentiallyAndGrowOnlyAsFarAsWritten) {
    OutputProfile profile = OutputProfile::newOutput();
    profile.layout = LayoutID::l51;
    profile.outputs = {4, 5};
    profile.trimsDB = {-3};
    EXPECT_EQ(trimOf(profile, 3), 0);
    setOutput(profile, 3, offChannel, {});
    EXPECT_EQ(profile.outputs, (std::vector{4, 5, 2, -1}));
    setTrim(profile, 2, 40);
    EXPECT_EQ(profile.trimsDB, (std::vector{-3.0, 0.0, 12.0}));
    setSequential(profile);
    EXPECT_EQ(profile.outputs, (std::vector{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(profile.trimsDB.size(), 3u) << "the trims stay";
    setLayout(profile, LayoutID::stereo);
    EXPECT_EQ(profile.outputs, (std::vector{0, 1}));
    EXPECT_EQ(profile.trimsDB, (std::vector{0.0, 0.0}));
}

struct OutputsForm : test::WindowTest {
    SettingsStore& store = model.settings();
    OutputsSettings form{store, model.engine().devices(), model.speakerTest()};

    const OutputProfile& profile(size_t index) { return store.value().profiles[index]; }
    template <typename Widget>
    Widget* named(const QString& name) {
        return WindowTest::named<Widget>(form, name);
    }
    void pick(const QString& name, const QString& text) {
        auto* box = named<QComboBox>(name);
        ASSERT_GE(box->findText(text), 0) << text.toStdString();
        box->setCurrentIndex(box->findText(text));
        Q_EMIT box->activated(box->currentIndex());
    }
};

TEST_F(OutputsForm, EveryFieldIsStoredAtOnce) {
    audio.setOutputs({{1, "manual", "Manual", 16}, {2, "desk", "Desk", 12}});
    form.show();
    EXPECT_EQ(form.selectedID(), profile(0).id);
    QTest::keyClicks(named<QLineEdit>("Name"), "!");
    EXPECT_EQ(profile(0).name, "Room 9.1.6!");
    pick("Device", "Desk  (12 out)");
    EXPECT_EQ(profile(0).deviceUID, "desk");
    pick("Output of Ltm", "Off");
    EXPECT_EQ(profile(0).outputs[12], -1);
    pick("Output of Ltm", "Out 3");
    EXPECT_EQ(profile(0).outputs[12], 2);
    auto* trim = named<TrimStepper>("Trim of L");
    trim->stepBy(-3);
    EXPECT_EQ(profile(0).trimsDB[0], -1.5);
    pick("Layout", "5.1");
    EXPECT_EQ(profile(0).layout, LayoutID::l51);
    EXPECT_EQ(profile(0).outputs.size(), 6u);
    pick("Type", "Headphones (binaural)");
    EXPECT_EQ(profile(0).kind, OutputProfile::Kind::headphones);
    pick("Right output", "Out 12");
    EXPECT_EQ(profile(0).headphoneRight, 11);
    pick("Device", "System Output");
    EXPECT_FALSE(profile(0).deviceUID);
    EXPECT_TRUE(defaults.data("settings.v1"));
}

TEST_F(OutputsForm, ShowingAProfileWritesNothingAndHidesNoValue) {
    store.change([](AppSettings& s) {
        s.profiles[0].deviceUID = "gone";
        s.profiles[0].outputs = {3, 1, 30};
    });
    const int writes = defaults.writes;
    form.show();
    EXPECT_EQ(named<QComboBox>("Device")->currentData().toString(), "gone");
    EXPECT_EQ(named<QComboBox>("Output of L")->count(), 17);
    for (const auto& [speaker, output] : {std::pair("L", "Out 4"), {"C", "Out 31 (not there)"}, {"LFE", "Out 4"}}) {
        EXPECT_EQ(named<QComboBox>(QString("Output of ") + speaker)->currentText(), output);
    }
    EXPECT_EQ(defaults.writes, writes);
}

TEST_F(OutputsForm, SpeakersThatAreNotHeardAreMarkedAndPositionsAreNamed) {
    audio.setOutputs({{1, "manual", "Card", 6, {"FL", "FR", "RL", "RR", "FC", "LFE"}}});
    store.change([](AppSettings& s) { s.profiles[0].layout = LayoutID::l71; });
    form.show();
    const auto marked = [&](const QString& speaker) { return !named<QWidget>(speaker + " is not heard")->isHidden(); };
    EXPECT_EQ(named<QComboBox>("Output of C")->currentText(), "Out 5 · FC");
    EXPECT_EQ(named<QComboBox>("Output of Lss")->currentText(), "Out 7 (not there)");
    EXPECT_TRUE(marked("Lss"));
    EXPECT_FALSE(marked("Lrs"));
    EXPECT_FALSE(named<QToolButton>("Test Lss")->isEnabled());
    pick("Output of Lss", "Out 1 · FL");
    EXPECT_EQ(profile(0).outputs, (std::vector{0, 1, 4, 5, 0, 7, 2, 3})) << "the rest stays where it was";
    EXPECT_FALSE(marked("Lss"));
    named<QPushButton>("By Position")->click();
    EXPECT_TRUE(profile(0).followsPositions);
    named<QPushButton>("Sequential from 1")->click();
    EXPECT_EQ(named<QComboBox>("Output of C")->currentText(), "Out 3 · RL");
    audio.setOutputs({{1, "manual", "Card", 16}});
    loop.drain();
    EXPECT_FALSE(marked("Rrs")) << "a device that comes while the form is open";
}

TEST_F(OutputsForm, PlusAddsAndMinusRemovesAllButTheLast) {
    form.show();
    named<QToolButton>("Add an output")->click();
    ASSERT_EQ(store.value().profiles.size(), 4u);
    EXPECT_EQ(profile(3).name, "New Output");
    EXPECT_EQ(form.selectedID(), profile(3).id);
    auto* minus = named<QToolButton>("Remove the selected output");
    minus->click();
    EXPECT_EQ(store.value().profiles.size(), 3u);
    EXPECT_FALSE(minus->isEnabled()) << "a second press would remove one more";
    auto* list = form.findChild<QListWidget*>();
    for (int i = 0; i < 4; ++i) {
        list->setCurrentRow(0);
        minus->click();
        list->setCurrentRow(-1);
    }
    EXPECT_EQ(store.value().profiles.size(), 1u);
}

}  // namespace
}  // namespace brindlehum
