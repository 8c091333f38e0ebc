// Lists the installed LV2 effects.
#include <algorithm>
#include <filesystem>
#include <tuple>

#include "lv2_world.h"
#include "platform/linux_plugins.h"

namespace brindlehum {

std::vector<PluginInfo> scanPlugins(const std::stop_token& stop) {
    Lv2World world;
    world.loadAll();
    std::vector<PluginInfo> found;
    const LilvPlugins* const plugins = lilv_world_get_all_plugins(world.raw());
    LILV_FOREACH(plugins, each, plugins) {
        if (stop.stop_requested()) { break; }
        PluginInfo info = world.describe(lilv_plugins_get(plugins, each));
        // An instrument or an analyser is no effect.
        if (info.inputs > 0 && info.outputs > 0 && !info.name.empty()) { found.push_back(std::move(info)); }
    }
    std::ranges::sort(found, {}, [](const PluginInfo& each) { return std::tie(each.maker, each.name, each.uri); });
    return found;
}

std::string pluginsFingerprint() {
    namespace fs = std::filesystem;
    std::vector<std::string> seen;
    for (const std::string& folder : lv2Folders()) {
        std::error_code error;
        for (auto each = fs::directory_iterator(folder, error); !error && each != fs::directory_iterator();
             each.increment(error)) {
            std::error_code none;
            const auto changed = fs::last_write_time(each->path(), none).time_since_epoch().count();
            const auto manifest = fs::last_write_time(each->path() / "manifest.ttl", none).time_since_epoch().count();
            seen.push_back(each->path().string() + " " + std::to_string(changed) + " " + std::to_string(manifest));
        }
    }
    std::ranges::sort(seen);
    std::string all;
    for (const std::string& each : seen) { all += each + "\n"; }
    return all;
}

}  // namespace brindlehum
