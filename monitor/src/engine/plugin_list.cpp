// Scans in the background and caches what was found.
#include "monitor/engine/plugin_list.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>

#include "base/error.h"
#include "base/file_replacement.h"
#include "base/home_folder.h"
#include "base/path.h"
#include "platform/linux_plugins.h"

namespace brindlehum {
namespace {

using nlohmann::json;

std::optional<std::vector<PluginInfo>> remembered(const std::filesystem::path& file, const std::string& fingerprint) {
    std::ifstream in(file);
    const json kept = json::parse(in, nullptr, false);
    try {
        if (kept.is_object() && kept.at("fingerprint") == fingerprint) {
            return kept.at("plugins").get<std::vector<PluginInfo>>();
        }
    } catch (const json::exception&) {  // written by another version
    }
    return std::nullopt;
}

void remember(const std::filesystem::path& file, const std::string& fingerprint, const std::vector<PluginInfo>& list) {
    const json kept = {{"fingerprint", fingerprint}, {"plugins", list}};
    try {
        createFolders(file.parent_path());
        FileReplacement::writeText(file, kept.dump(-1, ' ', false, json::error_handler_t::replace), {.waits = true});
    } catch (const Error&) {  // the next look takes longer, no more
    }
}

}  // namespace

PluginList::PluginList(MainLoop& loop, std::filesystem::path cacheFile, Scanner scanner)
    : cacheFile_(std::move(cacheFile)), scanner_(std::move(scanner)), queue_(loop, "Brindlehum.plugins") {}

std::filesystem::path PluginList::defaultFile() {
    const char* const cache = std::getenv("XDG_CACHE_HOME");
    const auto folder = cache && *cache == '/' ? std::filesystem::path(cache) : homeFolder() / ".cache";
    return folder / "brindlehum" / "plugins.json";
}

PluginList::Scanner PluginList::system() {
    return {pluginsFingerprint, scanPlugins};
}

const PluginInfo* PluginList::find(const std::string& uri) const {
    const auto found = std::ranges::find(list_, uri, &PluginInfo::uri);
    return found == list_.end() ? nullptr : &*found;
}

void PluginList::refresh() {
    if (looks_.isBusy()) { return; }
    queue_.run(
        looks_,
        [file = cacheFile_, scanner = scanner_](const Background::Task& task) {
            const std::string fingerprint = scanner.fingerprint();
            if (auto kept = remembered(file, fingerprint)) { return std::move(*kept); }
            std::vector<PluginInfo> found = scanner.scan(task.token());
            if (!task.isStopped()) { remember(file, fingerprint, found); }
            return found;
        },
        [this](std::vector<PluginInfo> found) {
            const bool isNew = !known_ || found != list_;
            known_ = true;
            list_ = std::move(found);
            if (isNew) { Q_EMIT changed(); }
        });
}

}  // namespace brindlehum
