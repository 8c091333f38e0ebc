// The inserts in the monitor's window: chosen, ordered, bypassed, set and removed.
#include "ui/monitor/inserts_box.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <stdexcept>

#include "support/audio_files.h"
#include "support/lv2/test_effects.h"
#include "support/platform/manual_audio.h"
#include "support/platform/manual_main_loop.h"
#include "ui/look/value_slider.h"
#include "ui/monitor/insert_panel.h"
#include "ui/monitor/plugin_picker.h"

namespace brindlehum {
namespace {

struct InsertsBoxTest : testing::Test {
    static std::shared_ptr<BinauralStage> noStage(double) { throw std::runtime_error("no set"); }
    InsertsBoxTest() {
        box_.show();
        EXPECT_TRUE(loop_.runUntil([&] { return !monitor_.plugins().list().empty(); }));
    }
    // The first of this text in the box or a row of it.
    QPushButton* button(const QWidget& in, const QString& text) {
        for (auto* each : in.findChildren<QPushButton*>()) {
            if (each->text() == text && each->isVisibleTo(&in)) { return each; }
        }
        return nullptr;
    }
    void click(QAbstractButton* button) {
        ASSERT_NE(button, nullptr);
        QTest::mouseClick(button, Qt::LeftButton);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void add(const QString& words) {
        click(button(box_, "Add LV2 Plug-in…"));
        auto* picker = box_.findChild<PluginPicker*>();
        ASSERT_NE(picker, nullptr);
        loop_.runUntil([&] { return !monitor_.plugins().isLooking(); });
        QTest::keyClicks(picker->findChild<QLineEdit*>(), words);
        QTest::keyClick(picker->findChild<QLineEdit*>(), Qt::Key_Return);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    std::vector<std::string> names() {
        std::vector<std::string> out;
        for (const Insert& each : monitor_.inserts().list()) { out.push_back(each.name); }
        return out;
    }
    InsertPanel* panel() {
        for (QWidget* each : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<InsertPanel*>(each)) { return found; }
        }
        return nullptr;
    }

    struct Machine {
        Machine() {
            test::useTestEffects();
            qputenv("XDG_CACHE_HOME", cache.path().c_str());
        }
        test::TempFolder cache;
    } machine_;
    ManualMainLoop loop_;
    ManualAudioSystem audio_{loop_};
    MemoryDefaults defaults_;
    SettingsStore settings_{defaults_};
    MonitorEngine monitor_{audio_, settings_, loop_, noStage};
    InsertsBox box_{monitor_};
};

TEST_F(InsertsBoxTest, PickerFindsByWordsAndOffersNoRefusedOne) {
    add("test GAI");
    EXPECT_EQ(names(), std::vector<std::string>{"Testers: Gain"});
    add("needy");
    EXPECT_EQ(names().size(), 1U);
    const auto* picker = box_.findChild<PluginPicker*>();
    ASSERT_NE(picker, nullptr) << "there was nothing to add";
    EXPECT_FALSE(picker->chosen().has_value());
}

TEST_F(InsertsBoxTest, RowsMoveBypassAndRemove) {
    add("gain");
    add("delay");
    const auto rows = box_.findChildren<InsertRow*>();
    ASSERT_EQ(rows.size(), 2);
    EXPECT_FALSE(rows[0]->findChildren<QToolButton*>()[0]->isEnabled()) << "it is the first already";
    click(rows[1]->findChildren<QToolButton*>()[0]);
    EXPECT_EQ(names(), (std::vector<std::string>{"Testers: Delay", "Testers: Gain"}));
    click(button(box_, "Bypass"));
    EXPECT_TRUE(monitor_.inserts().list()[0].isBypassed);
    click(button(box_, "Bypassed"));
    EXPECT_FALSE(monitor_.inserts().list()[0].isBypassed);
    click(box_.findChildren<InsertRow*>()[0]->findChildren<QToolButton*>()[2]);
    EXPECT_EQ(names(), std::vector<std::string>{"Testers: Gain"});
}

TEST_F(InsertsBoxTest, PanelSetsEveryKindOfControlAndGoesWithItsInsert) {
    add("gain");
    click(button(box_, "Open"));
    ASSERT_NE(panel(), nullptr);
    const auto& values = monitor_.inserts().list()[0].settings.values;
    auto* slider = panel()->findChild<ValueSlider*>();
    slider->setValue(slider->minimum());
    EXPECT_EQ(values.at("gain"), -60);
    QTest::mouseDClick(slider, Qt::LeftButton);
    EXPECT_EQ(values.at("gain"), 0);
    QTest::mouseClick(panel()->findChild<QCheckBox*>(), Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_EQ(values.at("invert"), 1);
    auto* channels = panel()->findChild<QComboBox*>();
    EXPECT_EQ(channels->currentText(), "Both");
    QTest::keyClick(channels, Qt::Key_Down);
    EXPECT_EQ(values.at("which"), 1);
    click(box_.findChildren<InsertRow*>()[0]->findChildren<QToolButton*>()[2]);
    EXPECT_EQ(panel(), nullptr);
    const PluginControl cutoff{"f", "F", 20, 20000, 1000, false, false, true, "Hz", {}};
    EXPECT_EQ(InsertPanel::readout(cutoff, 440.2), "440 Hz");
    EXPECT_EQ(InsertPanel::readout({"g", "G", -6, 6, 0, false, false, false, "dB", {}}, -0.001), "0.00 dB");
}

}  // namespace
}  // namespace brindlehum
