// The control port's commands for the monitor's inserts.
#include "app/monitor_commands.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/platform/manual_audio.h"
#include "support/platform/manual_main_loop.h"

namespace brindlehum {
namespace {

TEST(MonitorCommands, ListTheInsertsAndBypassThemByPlaceOrName) {
    ManualMainLoop loop;
    ManualAudioSystem audio(loop);
    MemoryDefaults defaults;
    SettingsStore settings(defaults);
    MonitorEngine monitor(audio, settings, loop);
    for (const char* name : {"Room", "Limiter"}) {
        PluginInfo info;
        info.name = name;
        info.maker = "Acme";
        monitor.addInsert(info);
    }
    MonitorCommands commands(monitor);
    const auto bypassed = [&](const ControlParams& params) {
        std::string marks;
        const auto answer = commands.handle(params);
        for (const auto& each : answer.at("inserts")) { marks += each.at("bypassed").get<bool>() ? "x" : "-"; }
        return marks;
    };
    EXPECT_EQ(bypassed({}), "--");
    EXPECT_EQ(bypassed({{"action", "bypass"}, {"insert", "2"}}), "-x");
    EXPECT_EQ(bypassed({{"action", "bypass"}, {"insert", "Acme: Room"}}), "xx");
    EXPECT_EQ(bypassed({{"action", "bypass"}, {"insert", "2"}}), "x-");
    for (const char* none : {"", "0", "3", "Room"}) {
        EXPECT_EQ(bypassed({{"action", "bypass"}, {"insert", none}}), "x-") << none;
    }
    EXPECT_EQ(commands.handle({}).at("inserts")[0].at("name"), "Acme: Room");
}

}  // namespace
}  // namespace brindlehum
