// InfoCache: probes each file once, and forgets a failed probe.
#include "library/model/info_cache.h"

namespace brindlehum {

InfoCache::InfoCache(MainLoop& loop) : probes_(loop, "Brindlehum.info") {}

const AudioFileInfo* InfoCache::info(const std::filesystem::path& path) {
    const std::string key = path.string();
    if (const auto item = items_.find(key); item != items_.end()) { return &item->second; }
    if (!asked_.insert(key).second) { return nullptr; }
    probes_.queue().run([key] { return AudioFileInfo::load(key); },
                        [this, key](AudioFileInfo info) {
                            asked_.erase(key);
                            items_[key] = std::move(info);
                            Q_EMIT loaded(key);
                        },
                        [this, key](const std::exception&) { asked_.erase(key); });  // its cells stay empty
    return nullptr;
}

void InfoCache::learn(const AudioFileInfo& info) {
    AudioFileInfo& known = items_[info.url.string()];
    if (known == info) { return; }
    known = info;
    Q_EMIT loaded(info.url);
}

void InfoCache::forgetWaiting() {
    probes_.dropWaiting();
    asked_.clear();
}

}  // namespace brindlehum
