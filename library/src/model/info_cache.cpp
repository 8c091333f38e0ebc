#include "library/model/info_cache.h"

#include <QPointer>

namespace brindlehum {

InfoCache::InfoCache(MainLoop& loop) : loop_(loop) {}

InfoCache::~InfoCache() {
    forgetWaiting();
}

const AudioFileInfo* InfoCache::info(const std::filesystem::path& url) {
    const std::string key = url.string();
    if (const auto item = items_.find(key); item != items_.end()) { return &item->second; }
    if (!asked_.insert(key).second) { return nullptr; }
    queue_.async([self = QPointer(this), &loop = loop_, key, newest = generation_, asked = generation_->load()] {
        if (*newest != asked) { return; }
        std::optional<AudioFileInfo> info;
        try {
            info = AudioFileInfo::load(key);
        } catch (const std::exception&) {
            // The cells of such a file stay empty.
        }
        loop.post([self, key, asked, info = std::move(info)] {
            if (self) { self->take(key, info, asked); }
        });
    });
    return nullptr;
}

void InfoCache::take(const std::string& key, std::optional<AudioFileInfo> info, uint64_t generation) {
    if (generation == *generation_) { asked_.erase(key); }
    if (!info) { return; }
    items_[key] = std::move(*info);
    Q_EMIT loaded(key);
}

void InfoCache::forgetWaiting() {
    ++*generation_;
    asked_.clear();
}

}  // namespace brindlehum
