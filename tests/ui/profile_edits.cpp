// The rules of the profile editor, and that the form obeys them through the store.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include "support/platform/manual_audio.h"
#include "support/platform/manual_main_loop.h"
#include "ui/settings/outputs_settings.h"
#include "ui/settings/profile_edits.h"
#include "ui/settings/trim_stepper.h"

namespace brindlehum {
namespace {

using namespace ProfileEdits;

OutputProfile room() {
    OutputProfile profile = OutputProfile::newOutput();
    profile.layout = LayoutID::l51;
    profile.outputs = {4, 5};
    profile.trimsDB = {-3};
    return profile;
}

TEST(ProfileEdits, ShortListsReadSequentiallyAndGrowOnlyAsFarAsWritten) {
    OutputProfile profile = room();
    EXPECT_EQ(outputOf(profile, 1), 5);
    EXPECT_EQ(outputOf(profile, 5), 5);
    EXPECT_EQ(trimOf(profile, 0), -3);
    EXPECT_EQ(trimOf(profile, 3), 0);
    setOutput(profile, 3, offChannel);
    EXPECT_EQ(profile.outputs, (std::vector{4, 5, 2, -1}));
    setTrim(profile, 2, 1.5);
    EXPECT_EQ(profile.trimsDB, (std::vector{-3.0, 0.0, 1.5}));
    setOutput(profile, 0, 9);
    EXPECT_EQ(profile.outputs, (std::vector{9, 5, 2, -1}));
}

TEST(ProfileEdits, ANewLayoutStartsOverAndTheSameOneDoesNot) {
    OutputProfile profile = OutputProfile::defaults()[0];
    setTrim(profile, 3, 6);
    setOutput(profile, 0, 7);
    const OutputProfile before = profile;
    setLayout(profile, LayoutID::l916);
    EXPECT_EQ(profile, before);
    setLayout(profile, LayoutID::stereo);
    EXPECT_EQ(profile.outputs, (std::vector{0, 1}));
    EXPECT_EQ(profile.trimsDB, (std::vector{0.0, 0.0}));
    setLayout(profile, LayoutID::l51);
    EXPECT_EQ(profile.outputs, (std::vector{0, 1, 2, 3, 4, 5}));
    setTrim(profile, 1, 40);
    EXPECT_EQ(profile.trimsDB[1], 12);
}

TEST(ProfileEdits, SequentialLeavesTheTrims) {
    OutputProfile profile = room();
    setSequential(profile);
    EXPECT_EQ(profile.outputs, (std::vector{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(profile.trimsDB, std::vector{-3.0});
}

TEST(ProfileEdits, PickersCountTheDeviceOrTheDefaultOne) {
    const std::vector<AudioOutputDevice> devices = {{7, "desk", "Desk", 16}};
    OutputProfile profile = room();
    EXPECT_EQ(channelCount(profile, devices, 2), 2);
    profile.deviceUID = "desk";
    EXPECT_EQ(channelCount(profile, devices, 2), 16);
    profile.deviceUID = "unplugged";
    EXPECT_EQ(channelCount(profile, devices, 2), 2);
    EXPECT_EQ(pickerRows(2, 5), 6);
    EXPECT_EQ(pickerRows(16, 5), 16);
    EXPECT_EQ(pickerRows(0, offChannel), 0);
}

TEST(ProfileEdits, TheLastProfileStays) {
    AppSettings settings;
    const UUID added = append(settings);
    EXPECT_EQ(settings.profiles.back().name, "New Output");
    remove(settings, UUID::random());
    EXPECT_EQ(settings.profiles.size(), 4u);
    while (settings.profiles.size() > 1) { remove(settings, settings.profiles.front().id); }
    remove(settings, added);
    ASSERT_EQ(settings.profiles.size(), 1u);
    EXPECT_EQ(settings.profiles[0].id, added);
}

struct OutputsForm : testing::Test {
    ManualMainLoop loop;
    ManualAudioSystem audio{loop};
    AudioDevices devices{audio};
    MemoryDefaults defaults;
    SettingsStore store{defaults};
    OutputsSettings form{store, devices};

    const OutputProfile& profile(size_t index) { return store.value().profiles[index]; }
    template <typename Widget>
    Widget* named(const QString& name) {
        for (auto* widget : form.findChildren<Widget*>()) {
            if (widget->accessibleName() == name || widget->objectName() == name) { return widget; }
        }
        ADD_FAILURE() << "no " << name.toStdString();
        return nullptr;
    }
    void pick(const QString& name, const QString& text) {
        auto* box = named<QComboBox>(name);
        ASSERT_GE(box->findText(text), 0) << text.toStdString();
        box->setCurrentIndex(box->findText(text));
        Q_EMIT box->activated(box->currentIndex());
    }
};

TEST_F(OutputsForm, EveryFieldIsInTheSettingsAtOnce) {
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

TEST_F(OutputsForm, TheStepperKeepsItsRange) {
    form.show();
    auto* trim = named<TrimStepper>("Trim of L");
    EXPECT_EQ(trim->text(), "+0.0 dB");
    trim->stepBy(-3);
    EXPECT_EQ(profile(0).trimsDB[0], -1.5);
    EXPECT_EQ(trim->text(), "-1.5 dB");
    trim->stepBy(100);
    EXPECT_EQ(profile(0).trimsDB[0], 12);
    trim->stepBy(-200);
    EXPECT_EQ(profile(0).trimsDB[0], -24);
}

TEST_F(OutputsForm, ShowingAShortListWritesNothing) {
    store.change([](AppSettings& s) { s.profiles[0].outputs = {3}; });
    const int writes = defaults.writes;
    form.show();
    EXPECT_EQ(named<QComboBox>("Output of L")->currentText(), "Out 4");
    EXPECT_EQ(named<QComboBox>("Output of LFE")->currentText(), "Out 4");
    EXPECT_EQ(defaults.writes, writes);
}

TEST_F(OutputsForm, AStoredChannelAndAMissingDeviceStayVisible) {
    store.change([](AppSettings& s) {
        s.profiles[0].deviceUID = "gone";
        s.profiles[0].outputs[2] = 30;
    });
    form.show();
    EXPECT_EQ(named<QComboBox>("Device")->currentData().toString(), "gone");
    EXPECT_EQ(named<QComboBox>("Output of C")->currentText(), "Out 31");
    EXPECT_EQ(named<QComboBox>("Output of L")->count(), 17);
}

TEST_F(OutputsForm, PlusAddsAndSelectsAndMinusRemoves) {
    form.show();
    named<QToolButton>("Add an output")->click();
    ASSERT_EQ(store.value().profiles.size(), 4u);
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
