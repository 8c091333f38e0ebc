// LV2 effects, described and run.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <thread>

#include "base/error.h"
#include "platform/linux_plugins.h"
#include "support/audio_files.h"
#include "support/lv2/test_effects.h"
#include "support/refusal.h"

namespace brindlehum {
namespace {

using test::effect;

struct Plugins : testing::Test {
    Plugins() { test::useTestEffects(); }
    std::unique_ptr<PluginHost> host_ = makePluginHost();

    // A block of ones through a mono effect.
    static float heard(PluginInstance& instance) {
        const std::vector<float> in(64, 1.0F);
        std::vector<float> out(64);
        const float* inputs[] = {in.data()};
        float* outputs[] = {out.data()};
        instance.process(inputs, outputs, 64);
        return out[63];
    }
};

TEST_F(Plugins, AreListedWithTheirControlsAndTheReasonForARefusal) {
    const auto found = scanPlugins({});
    const auto named = [&](const std::string& name) -> const PluginInfo& {
        return *std::ranges::find(found, name, &PluginInfo::name);
    };
    ASSERT_EQ(found.size(), 5U);
    const PluginInfo& gain = named("Gain");
    EXPECT_EQ(gain, host_->describe(effect("gain"), test::effectBundle)) << "one bundle tells as much as a scan";
    EXPECT_EQ(gain.maker, "Testers");
    EXPECT_EQ(std::pair(gain.inputs, gain.outputs), std::pair(2, 2));
    ASSERT_EQ(gain.controls.size(), 3U);
    EXPECT_EQ(gain.controls[0], (PluginControl{"gain", "Gain", -60, 12, 0, false, false, false, "dB", {}}));
    EXPECT_TRUE(gain.controls[1].isSwitch);
    EXPECT_EQ(gain.controls[2].choices,
              (std::vector<std::pair<std::string, double>>{{"Both", 0}, {"Left", 1}, {"Right", 2}}));
    for (const PluginInfo& each : found) { EXPECT_EQ(each.refusal.empty(), each.name != "Needy") << each.name; }
    EXPECT_EQ(named("Keeper").files, (std::vector<PluginFile>{{"urn:brindlehum:test:source", "Source"}}));
    EXPECT_EQ(named("Needy").refusal, "It needs urn:brindlehum:test:unknown, which Brindlehum doesn't offer");
    EXPECT_THROW((void)host_->instantiate(named("Needy"), 48000), Error);
    EXPECT_THROW((void)host_->describe(effect("none"), ""), Error);
}

TEST_F(Plugins, AWorkersAnswerAndAFileArriveAndTheStateGoesOnInTheNextInstance) {
    const PluginInfo keeper = host_->describe(effect("keeper"), test::effectBundle);
    const auto first = host_->instantiate(keeper, 48000);
    EXPECT_EQ(heard(*first), 1);
    first->setControl(0, 3);
    while (heard(*first) != 3) { std::this_thread::yield(); }
    const test::TempFolder folder;
    std::ofstream(folder / "factor.txt") << "0.25";
    const auto next = host_->instantiate(keeper, 48000, {{}, {}, first->state()});
    EXPECT_EQ(heard(*next), 3);
    const std::map<std::string, std::string> files = {{"urn:brindlehum:test:source", folder / "factor.txt"}};
    EXPECT_EQ(heard(*host_->instantiate(keeper, 48000, {{}, files, first->state()})), 0.25F);
    next->setFile(files.begin()->first, files.begin()->second);
    while (heard(*next) != 0.25F) { std::this_thread::yield(); }
    EXPECT_EQ(heard(*host_->instantiate(keeper, 48000, {{}, {}, "@prefix no <state"})), 1);
}

TEST_F(Plugins, AWindowIsShownWhatIsSetAndReportedAndItsUsersWishesComeBack) {
    const PluginInfo keeper = host_->describe(effect("keeper"), test::effectBundle);
    const auto instance = host_->instantiate(keeper, 48000, {{{"factor", 2}}, {}, {}});
    std::vector<std::pair<size_t, double>> set;
    std::map<std::string, std::string> files;
    PluginWindowPlace place{1, 1, {}, {}, {}, {}};
    place.onSet = [&](size_t control, double value) { set.emplace_back(control, value); };
    place.onFile = [&](const std::string& uri, const std::string& path) { files[uri] = path; };
    const auto window = instance->openWindow(keeper, place);
    EXPECT_EQ(window->size(), (PluginWindow::Size{120, 50}));
    window->show(0, 5);
    EXPECT_EQ(set, (std::vector<std::pair<size_t, double>>{{0, 6}}));
    window->show(0, 6);
    EXPECT_EQ(window->size().width, 150) << "its own wish doesn't come back to it";
    window->show(0, 3);
    EXPECT_EQ(window->size().width, 130);
    EXPECT_EQ(files, (std::map<std::string, std::string>{{"urn:brindlehum:test:source", "/factor.txt"}}));

    const PluginInfo delay = host_->describe(effect("delay"), test::effectBundle);
    const auto late = host_->instantiate(delay, 48000, {{{"frames", 77}}, {}, {}});
    const auto shown = late->openWindow(delay, place);
    const float* const silent[2] = {};
    float* const unwanted[2] = {};
    late->process(silent, unwanted, 64);
    shown->idle();
    EXPECT_EQ(shown->size().width, 177);

    for (const auto& [name, why] : {std::pair("gain", "It has no window of its own"),
                                    std::pair("trouble",
                                              "Its window needs urn:brindlehum:test:unknown, which "
                                              "Brindlehum doesn't offer")}) {
        const PluginInfo info = host_->describe(effect(name), test::effectBundle);
        EXPECT_EQ(test::refusalOf([&] { (void)host_->instantiate(info, 48000)->openWindow(info, place); }).text, why);
    }
}

}  // namespace
}  // namespace brindlehum
