// The chain as it is kept, and the process that hosts it, played by the test.
#include "monitor/engine/monitor_inserts.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "monitor/engine/plugin_list.h"
#include "settings/user_defaults.h"
#include "support/audio_files.h"
#include "support/platform/manual_main_loop.h"

namespace brindlehum {
namespace {

using nlohmann::json;

PluginInfo plugin(const std::string& name) {
    PluginInfo info;
    info.uri = "urn:" + name;
    info.name = name;
    info.maker = "Maker";
    info.inputs = info.outputs = 2;
    return info;
}

struct MonitorInsertsTest : testing::Test {
    struct Helper : InsertHelper {
        explicit Helper(MonitorInsertsTest& owner) : test(owner) { test.helpers.push_back(this); }
        ~Helper() override { std::erase(test.helpers, this); }
        void send(const json& message) override { test.sent.push_back(message); }
        void finish() override {}
        void waitForEnd(double) override {}
        MonitorInsertsTest& test;
    };
    std::string lastSent() const { return sent.empty() ? "" : sent.back().value("do", ""); }

    std::vector<Helper*> helpers;  // alive
    std::vector<json> sent;
    ManualMainLoop loop_;  // may free a helper at its end
    MemoryDefaults defaults_;
    MonitorInserts inserts_{defaults_, loop_, [this] { return std::make_unique<Helper>(*this); }};
};

TEST_F(MonitorInsertsTest, KeepTheChainOverARestartAndLeaveOutWhatCantBeRead) {
    const UUID first = inserts_.add(plugin("Room"));
    const UUID second = inserts_.add(plugin("Limiter"));
    inserts_.toggleBypass(first);
    inserts_.setValue(second, "gain", -3.5);
    inserts_.move(second, 0);
    EXPECT_TRUE(helpers.empty()) << "nothing plays";
    const MonitorInserts next(defaults_, loop_, nullptr);
    EXPECT_EQ(next.list(), inserts_.list());
    ASSERT_EQ(next.list().size(), 2U);
    EXPECT_EQ(next.list()[0].name, "Maker: Limiter");
    EXPECT_EQ(next.list()[0].settings.values.at("gain"), -3.5);
    EXPECT_TRUE(next.list()[1].isBypassed);
    json kept = json::parse(*defaults_.data("monitor.inserts"));
    kept[1].erase("uri");
    kept.push_back(7);
    defaults_.set("monitor.inserts", kept.dump());
    EXPECT_EQ(MonitorInserts(defaults_, loop_, nullptr).list().size(), 1U);
}

TEST_F(MonitorInsertsTest, AProcessThatFallsSilentOrEndsIsReplacedOnlyOnRequest) {
    const UUID room = inserts_.add(plugin("Room"));
    EXPECT_TRUE(inserts_.route(5, 12).isPending);
    EXPECT_TRUE(inserts_.route(5, 12).isPending);
    ASSERT_EQ(helpers.size(), 1U);
    ASSERT_EQ(sent.size(), 1U) << "it is asked once";
    EXPECT_EQ(sent[0]["channels"], 12);
    helpers[0]->onMessage(
        {{"is", "status"},
         {"latency", 480},
         {"inserts", {{{"id", room.string()}, {"problem", ""}, {"latency", 480}, {"instances", 6}}}}});
    helpers[0]->onMessage({{"is", "open"}, {"node", 77}, {"sampleRate", 48000.0}});
    EXPECT_EQ(inserts_.route(5, 12).node, 77U);
    EXPECT_EQ(inserts_.latency(), 0.01);
    for (int second = 0; second < 20; ++second) {
        loop_.advance(1);
        helpers[0]->onMessage({{"is", "pong"}});
    }
    EXPECT_EQ(lastSent(), "ping");
    loop_.advance(7);
    EXPECT_TRUE(inserts_.hasFailed());
    EXPECT_EQ(inserts_.message(), "The inserts don't answer; the monitor plays without inserts");
    EXPECT_EQ(inserts_.route(5, 12).node, 0U);
    EXPECT_FALSE(inserts_.route(5, 12).isPending) << "the monitor goes straight";
    inserts_.add(plugin("Limiter"));
    loop_.advance(60);
    EXPECT_TRUE(helpers.empty());
    inserts_.restart();
    ASSERT_EQ(helpers.size(), 1U);
    helpers[0]->onMessage({{"is", "crash"}, {"insert", 1}});
    helpers[0]->onEnd("It ended");
    EXPECT_EQ(inserts_.message(), "Maker: Limiter crashed; the monitor plays without inserts");
}

TEST_F(MonitorInsertsTest, AProcessThatMayHangInAWindowStartsAgainWithoutIt) {
    const UUID room = inserts_.add(plugin("Room"));
    (void)inserts_.route(5, 12);
    inserts_.windows().open(room, 33, 1.5);
    EXPECT_EQ(sent.back()["parent"], 33);
    helpers[0]->onMessage({{"is", "status"}, {"latency", 0}, {"inserts", json::array()}});
    helpers[0]->onMessage({{"is", "window"}, {"id", room.string()}, {"width", 640}, {"height", 480}});
    EXPECT_EQ(inserts_.windows().find(room)->width, 640);
    helpers[0]->onMessage({{"is", "bypass"}, {"id", room.string()}, {"on", true}});
    EXPECT_TRUE(inserts_.list()[0].isBypassed);
    loop_.advance(7);
    EXPECT_FALSE(inserts_.hasFailed());
    EXPECT_EQ(inserts_.windows().find(room)->problem, "Its window may have hung");
    sent.clear();
    EXPECT_TRUE(inserts_.route(5, 12).isPending) << "it loads again";
    ASSERT_EQ(sent.size(), 1U) << "without the window";
    EXPECT_EQ(lastSent(), "open");
}

TEST(PluginListTest, ScansOnceUntilSomethingIsInstalled) {
    const test::TempFolder folder;
    ManualMainLoop loop;
    std::string fingerprint = "one";
    int scans = 0;
    const PluginList::Scanner scanner{[&] { return fingerprint; },
                                      [&](const std::stop_token&) {
                                          ++scans;
                                          return std::vector{plugin("Room"), plugin(fingerprint)};
                                      }};
    for (const int expected : {1, 1, 2, 3}) {
        if (expected == 2) { fingerprint = "two"; }
        if (expected == 3) { std::filesystem::resize_file(folder / "cache" / "plugins.json", 40); }
        PluginList list(loop, folder / "cache" / "plugins.json", scanner);
        list.refresh();
        ASSERT_TRUE(loop.runUntil([&] { return !list.isLooking(); }));
        EXPECT_EQ(scans, expected);
        EXPECT_NE(list.find("urn:" + fingerprint), nullptr);
    }
}

}  // namespace
}  // namespace brindlehum
