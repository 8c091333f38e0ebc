// The monitor's inserts in their own process on a real sound server: when they are heard, and what happens when they
// die.
#include <dirent.h>

#include <atomic>
#include <csignal>
#include <fstream>
#include <nlohmann/json.hpp>

#include "base/number_text.h"
#include "listening_test.h"
#include "monitor/engine/monitor_engine.h"
#include "platform/linux_plugins.h"
#include "support/lv2/test_effects.h"

namespace brindlehum::test {
namespace {

constexpr float clickLevel = 0.25F;
constexpr int clickEvery = 12000;  // frames

// A program that plays a click now and then on all channels, over a floor that never is 0.
struct Clicks : RenderTarget {
    int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override {
        for (int c = 0; c < buffers.channels; ++c) {
            for (uint32_t i = 0; buffers.planes[c] && i < frames; ++i) {
                buffers.planes[c][i] = (played + i) % uint64_t(clickEvery) == 777 ? clickLevel : 1e-4F;
            }
        }
        played += frames;
        return 0;
    }
    std::atomic<uint64_t> played = 0;
};

// The children of this process of that name.
std::vector<pid_t> childrenNamed(const std::string& name) {
    std::vector<pid_t> found;
    DIR* const all = ::opendir("/proc");
    while (const dirent* each = ::readdir(all)) {
        std::ifstream stat("/proc/" + std::string(each->d_name) + "/stat");
        std::string id, called, state;
        pid_t parent = 0;
        if (stat >> id >> called >> state >> parent && parent == ::getpid() && called == "(" + name + ")") {
            found.push_back(numberAtStart<pid_t>(id));
        }
    }
    ::closedir(all);
    return found;
}

struct InsertsOnPipeWire : ListeningTest {
    InsertsOnPipeWire() {
        useTestEffects();
        app_.settings().change([](AppSettings& s) {
            s.profiles[room] = {};
            s.profiles[room].id = UUID::random();
            s.profiles[room].layout = LayoutID::l714;
            s.profiles[room].deviceUID = "sink16";
            s.activeProfileID = s.profiles[room].id;
        });
        MonitorState state;
        state.source = MonitorSource::l714;
        monitor_.setState(state);
        monitor_.setSourceUID(DuplexAudio::busUID);
    }
    UUID add(const std::string& name) {
        PluginInfo info = makePluginHost()->describe(effect(name), effectBundle);
        return monitor_.addInsert(info);
    }
    void start() {
        monitor_.start();
        ASSERT_TRUE(until([&] { return monitor_.running(); })) << monitor_.message();
        ASSERT_TRUE(until([&] { return busOutput() != 0; }));
        playing_ = audio_->openOutput(busOutput(), false, clicks_, [] {});
        playing_->start();
    }
    uint32_t busOutput() {
        for (const auto& output : audio_->allOutputs()) {
            if (output.name == "Brindlehum Bus") { return output.id; }
        }
        return 0;
    }
    using Click = std::pair<int, double>;
    // How many frames after the bus a click comes to the last speaker of the room, and how loud it is there. A few
    // looks, since what has just changed fades, and the machine may miss a block.
    void expectClick(const Click& expected) {
        Click click;
        for (int look = 0; look < 8 && click != expected; ++look) {
            SinkRecorder recorder("sink16", 16, 20, "brindlehum-bus");
            listen(recorder, 5 * clickEvery / 2);
            const Planes heard = recorder.stop();
            const auto loudest = [&](size_t plane) {
                const auto from = heard[plane].end() - 2 * clickEvery;
                const auto at = std::max_element(from, heard[plane].end() - clickEvery / 2);
                return std::pair(int(at - heard[plane].begin()), double(*at));
            };
            click = {loudest(11).first - loudest(16).first, loudest(11).second};
        }
        EXPECT_EQ(click, expected);
    }
    bool fails() {
        return until([&] { return monitor_.inserts().hasFailed() && monitor_.running(); });
    }

    MonitorEngine& monitor_ = app_.monitor();
    Clicks clicks_;
    std::unique_ptr<OutputStream> playing_;
    const Click straight_{0, clickLevel}, late_{240, clickLevel};
};

TEST_F(InsertsOnPipeWire, TheirProcessAddsNoLatencyOfItsOwnAndMayDie) {
    start();
    expectClick(straight_);
    const UUID delay = add("delay");
    ASSERT_TRUE(until([&] { return monitor_.inserts().latency() > 0; })) << monitor_.inserts().message();
    EXPECT_EQ(monitor_.inserts().latency(), 240.0 / rate);
    expectClick(late_);
    monitor_.toggleBypass(delay);
    expectClick(late_);

    const auto helpers = childrenNamed("brindlehum-inse");
    ASSERT_EQ(helpers.size(), 1U);
    ::kill(helpers[0], SIGKILL);
    ASSERT_TRUE(fails());
    EXPECT_EQ(monitor_.inserts().message(), "The inserts' process ended; the monitor plays without inserts");
    expectClick(straight_);
    EXPECT_TRUE(childrenNamed("brindlehum-inse").empty()) << "it starts only when it is asked to";
    monitor_.inserts().restart();
    ASSERT_TRUE(until([&] { return monitor_.inserts().latency() > 0; }));
    expectClick(late_);
    monitor_.removeInsert(delay);
    expectClick(straight_);
}

TEST_F(InsertsOnPipeWire, WhatCrashesOrHangsIsNamedAndTheMonitorGoesOn) {
    add("gain");
    const UUID trouble = add("trouble");
    start();
    for (const auto& [what, name] : {std::pair(3.0, "crashed"), std::pair(4.0, "hung")}) {
        ASSERT_TRUE(until([&] { return monitor_.running() && !monitor_.inserts().hasFailed(); }));
        monitor_.inserts().setValue(trouble, "what", what);
        ASSERT_TRUE(fails()) << name;
        EXPECT_EQ(monitor_.inserts().message(),
                  "Testers: Trouble " + std::string(name) + "; the monitor plays without inserts");
        expectClick(straight_);
        monitor_.inserts().setValue(trouble, "what", 0);
        monitor_.inserts().restart();
    }
}

TEST_F(InsertsOnPipeWire, AnEffectsOwnWindowSetsItAndACrashOfTheWindowAloneLeavesTheEffect) {
    const UUID keeper = add("keeper");
    InsertWindows& windows = monitor_.inserts().windows();
    windows.open(keeper, 1, 1);
    start();
    const auto width = [&] { return windows.find(keeper)->width; };
    ASSERT_TRUE(until([&] { return width() == 100; })) << "it opens with its insert";
    const auto factor = [&] { return monitor_.inserts().find(keeper)->settings.values.at("factor"); };
    monitor_.inserts().setValue(keeper, "factor", 5);
    ASSERT_TRUE(until([&] { return factor() == 6; }));
    monitor_.inserts().setValue(keeper, "factor", 2);
    ASSERT_TRUE(until([&] { return width() == 120; }));
    expectClick({0, 2 * clickLevel});
    monitor_.inserts().setValue(keeper, "factor", 7);
    ASSERT_TRUE(until([&] { return !windows.find(keeper)->problem.empty(); }));
    EXPECT_EQ(windows.find(keeper)->problem, "Its window crashed");
    expectClick({0, 7 * clickLevel});
    EXPECT_EQ(monitor_.inserts().message(), "");
}

TEST_F(InsertsOnPipeWire, WhatAPluginKeepsOutlivesAStopAndALoopThroughTheInsertsIsFound) {
    const UUID keeper = add("keeper");
    monitor_.inserts().setValue(keeper, "factor", 0.5);
    start();
    const Click halved(0, clickLevel / 2);
    expectClick(halved);
    monitor_.stop();
    ASSERT_TRUE(until([&] { return !monitor_.inserts().find(keeper)->settings.state.empty(); }));
    monitor_.inserts().setValue(keeper, "factor", 0);  // which asks for nothing
    playing_.reset();
    MonitorInserts next(defaults_, loop_);
    EXPECT_EQ(next.list(), monitor_.inserts().list()) << "all is stored";
    start();
    expectClick(halved);

    PipeWireClient other;
    const std::lock_guard guard(other);
    pw_properties* ends = pw_properties_new(nullptr, nullptr);
    pw_properties_setf(ends, PW_KEY_LINK_OUTPUT_PORT, "%u", other.ports(other.waitForNode("sink16"), "out").at(0));
    pw_properties_setf(ends, PW_KEY_LINK_INPUT_PORT, "%u",
                       other.ports(other.waitForNode("brindlehum-inserts"), "in").at(0));
    auto* link = static_cast<pw_proxy*>(
        pw_core_create_object(other.core(), "link-factory", PW_TYPE_INTERFACE_Link, PW_VERSION_LINK, &ends->dict, 0));
    pw_properties_free(ends);
    other.sync();
    other.unlock();
    EXPECT_TRUE(until([&] { return monitor_.message().find("howl") != std::string::npos; })) << monitor_.message();
    other.lock();
    pw_proxy_destroy(link);
    other.sync();
}

}  // namespace
}  // namespace brindlehum::test
